// MusicXML 4.0 schema validation in process with libxml2, against the schema beside the source
// tree (../shared/musicxml-4.0); nothing is fetched over the network.
#pragma once

#include <string>

namespace scoretest {

// Empty when `xml` is a valid MusicXML 4.0 document; else the validator's messages with their
// line numbers.
std::string SchemaErrors(const std::string& xml);

} // namespace scoretest
