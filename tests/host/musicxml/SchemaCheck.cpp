#include "SchemaCheck.h"

#include <libxml/parser.h>
#include <libxml/xmlIO.h>
#include <libxml/xmlschemas.h>

#include <stdexcept>

#include "TestSupport.h"

namespace scoretest {

namespace {

void Collect(void* errors, xmlErrorPtr error) {
  *static_cast<std::string*>(errors) +=
      "line " + std::to_string(error->line) + ": " + (error->message ? error->message : "?\n");
}

// Parsed once: the schema and its imports take longer to read than a score to check.
xmlSchemaPtr Schema() {
  static xmlSchemaPtr schema = [] {
    xmlSetExternalEntityLoader(xmlNoNetExternalEntityLoader);
    auto path = scribotest::SourceDir().parent_path() / "shared" / "musicxml-4.0" / "musicxml.xsd";
    xmlSchemaParserCtxtPtr parser = xmlSchemaNewParserCtxt(path.c_str());
    xmlSchemaPtr parsed = parser ? xmlSchemaParse(parser) : nullptr;
    xmlSchemaFreeParserCtxt(parser);
    if (!parsed)
      throw std::runtime_error("cannot read the MusicXML schema " + path.string());
    return parsed;
  }();
  return schema;
}

} // namespace

std::string SchemaErrors(const std::string& xml) {
  std::string errors;
  xmlSchemaValidCtxtPtr validator = xmlSchemaNewValidCtxt(Schema());
  xmlSchemaSetValidStructuredErrors(validator, Collect, &errors);
  xmlDocPtr doc = xmlReadMemory(xml.data(), static_cast<int>(xml.size()), "score.musicxml", nullptr,
                                XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING);
  if (!doc)
    errors = "not well-formed XML";
  else if (xmlSchemaValidateDoc(validator, doc) != 0 && errors.empty())
    errors = "not valid";
  xmlFreeDoc(doc);
  xmlSchemaFreeValidCtxt(validator);
  return errors;
}

} // namespace scoretest
