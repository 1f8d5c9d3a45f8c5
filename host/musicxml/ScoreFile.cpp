#include "ScoreFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <memory>
#include <sstream>

#include <zip.h>

#include "ScoreError.h"

namespace scribo::musicxml {

namespace fs = std::filesystem;

namespace {

constexpr const char* kContainerPath = "META-INF/container.xml";
constexpr const char* kMimetypePath = "mimetype";
constexpr const char* kMimetype = "application/vnd.recordare.musicxml";

std::string Lower(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return text;
}

std::string ReadWholeFile(const fs::path& path) {
  std::error_code ec;
  if (fs::is_directory(path, ec))
    throw ScoreError("cannot open " + path.string() + ": it is a folder");
  std::ifstream in(path, std::ios::binary);
  if (!in)
    throw ScoreError("cannot open " + path.string() + ": " + std::strerror(errno));
  std::ostringstream bytes;
  bytes << in.rdbuf();
  if (in.bad())
    throw ScoreError("cannot read " + path.string() + ": " + std::strerror(errno));
  return bytes.str();
}

struct ZipCloser {
  void operator()(zip_t* archive) const { zip_discard(archive); }
};
using ZipArchive = std::unique_ptr<zip_t, ZipCloser>;

std::string ReadMember(zip_t* archive, zip_uint64_t index, const std::string& where) {
  zip_stat_t stat;
  if (zip_stat_index(archive, index, 0, &stat) != 0 || !(stat.valid & ZIP_STAT_SIZE))
    throw ScoreError(where + ": a damaged archive member");
  if (stat.size > (1ull << 31))
    throw ScoreError(where + ": an archive member larger than 2 GiB");
  zip_file_t* file = zip_fopen_index(archive, index, 0);
  if (!file)
    throw ScoreError(where + ": " + zip_strerror(archive));
  std::string bytes(stat.size, '\0');
  zip_int64_t got = zip_fread(file, bytes.data(), stat.size);
  zip_fclose(file);
  if (got < 0 || static_cast<zip_uint64_t>(got) != stat.size)
    throw ScoreError(where + ": a damaged archive member");
  return bytes;
}

// The path of the score inside the archive, from META-INF/container.xml; without a container,
// the first MusicXML file outside META-INF.
std::string FindRootfile(zip_t* archive, const std::string& where) {
  zip_int64_t index = zip_name_locate(archive, kContainerPath, 0);
  if (index >= 0) {
    std::string container = ReadMember(archive, static_cast<zip_uint64_t>(index), where);
    pugi::xml_document doc;
    if (!doc.load_buffer(container.data(), container.size()))
      throw ScoreError(where + ": META-INF/container.xml is not well-formed XML");
    for (auto rootfile : doc.child("container").child("rootfiles").children("rootfile")) {
      std::string type = rootfile.attribute("media-type").as_string();
      if (type.empty() || type == "application/vnd.recordare.musicxml+xml")
        return rootfile.attribute("full-path").as_string();
    }
    throw ScoreError(where + ": META-INF/container.xml names no MusicXML score");
  }
  zip_int64_t count = zip_get_num_entries(archive, 0);
  for (zip_int64_t i = 0; i < count; ++i) {
    std::string name = zip_get_name(archive, static_cast<zip_uint64_t>(i), 0);
    std::string lower = Lower(name);
    if (lower.starts_with("meta-inf/"))
      continue;
    if (lower.ends_with(".musicxml") || lower.ends_with(".xml"))
      return name;
  }
  throw ScoreError(where + ": the archive holds no MusicXML score");
}

ImportedScore ReadArchive(const std::string& bytes, const fs::path& path) {
  std::string where = path.string();
  zip_error_t error;
  zip_error_init(&error);
  zip_source_t* source = zip_source_buffer_create(bytes.data(), bytes.size(), 0, &error);
  if (!source)
    throw ScoreError(where + ": " + zip_error_strerror(&error));
  ZipArchive archive(zip_open_from_source(source, ZIP_RDONLY | ZIP_CHECKCONS, &error));
  if (!archive) {
    zip_source_free(source);
    std::string message = zip_error_strerror(&error);
    zip_error_fini(&error);
    throw ScoreError(where + ": not a compressed MusicXML file (" + message + ")");
  }
  zip_error_fini(&error);

  std::string rootPath = FindRootfile(archive.get(), where);
  zip_int64_t rootIndex = zip_name_locate(archive.get(), rootPath.c_str(), 0);
  if (rootIndex < 0)
    throw ScoreError(where + ": the archive lacks its score " + rootPath);
  std::string xml = ReadMember(archive.get(), static_cast<zip_uint64_t>(rootIndex), where);
  ImportedScore imported = ImportMusicXml(xml, where + ":" + rootPath);
  imported.source.fromArchive = true;
  imported.source.archivePath = rootPath;

  zip_int64_t count = zip_get_num_entries(archive.get(), 0);
  for (zip_int64_t i = 0; i < count; ++i) {
    std::string name = zip_get_name(archive.get(), static_cast<zip_uint64_t>(i), 0);
    if (i == rootIndex || name == kMimetypePath || name == kContainerPath || name.ends_with("/"))
      continue;
    imported.source.archiveMembers.push_back(
        {name, ReadMember(archive.get(), static_cast<zip_uint64_t>(i), where)});
  }
  return imported;
}

std::string ContainerXml(const std::string& rootPath) {
  pugi::xml_document doc;
  auto decl = doc.append_child(pugi::node_declaration);
  decl.append_attribute("version") = "1.0";
  decl.append_attribute("encoding") = "UTF-8";
  auto container = doc.append_child("container");
  auto rootfiles = container.append_child("rootfiles");
  auto rootfile = rootfiles.append_child("rootfile");
  rootfile.append_attribute("full-path") = rootPath.c_str();
  rootfile.append_attribute("media-type") = "application/vnd.recordare.musicxml+xml";
  std::ostringstream out;
  doc.save(out, "  ");
  return out.str();
}

// Builds the archive in memory: the mimetype first and uncompressed, as readers expect, then
// the container, the score and the input archive's other members.
std::string BuildArchive(const MusicXmlSource& source, const std::string& xml,
                         const fs::path& path) {
  std::string rootPath =
      source.fromArchive ? source.archivePath : path.stem().string() + ".musicxml";
  std::string container = ContainerXml(rootPath);
  zip_error_t error;
  zip_error_init(&error);
  zip_source_t* buffer = zip_source_buffer_create(nullptr, 0, 0, &error);
  if (!buffer)
    throw ScoreError("cannot write " + path.string() + ": " + zip_error_strerror(&error));
  zip_source_keep(buffer);
  zip_t* archive = zip_open_from_source(buffer, ZIP_TRUNCATE, &error);
  if (!archive) {
    zip_source_free(buffer);
    throw ScoreError("cannot write " + path.string() + ": " + zip_error_strerror(&error));
  }
  auto add = [&](const std::string& name, const std::string& bytes, bool store) {
    zip_source_t* member = zip_source_buffer(archive, bytes.data(), bytes.size(), 0);
    zip_int64_t index = member ? zip_file_add(archive, name.c_str(), member, ZIP_FL_ENC_UTF_8) : -1;
    if (index < 0) {
      if (member)
        zip_source_free(member);
      throw ScoreError("cannot write " + path.string() + ": " + zip_strerror(archive));
    }
    if (store)
      zip_set_file_compression(archive, static_cast<zip_uint64_t>(index), ZIP_CM_STORE, 0);
  };
  std::string mimetype = kMimetype;
  try {
    add(kMimetypePath, mimetype, true);
    add(kContainerPath, container, false);
    add(rootPath, xml, false);
    for (const auto& member : source.archiveMembers)
      add(member.name, member.bytes, false);
  } catch (...) {
    zip_discard(archive);
    zip_source_free(buffer);
    throw;
  }
  if (zip_close(archive) != 0) {
    std::string message = zip_strerror(archive);
    zip_discard(archive);
    zip_source_free(buffer);
    throw ScoreError("cannot write " + path.string() + ": " + message);
  }
  std::string bytes;
  zip_stat_t stat;
  if (zip_source_stat(buffer, &stat) == 0 && zip_source_open(buffer) == 0) {
    bytes.resize(stat.size);
    zip_int64_t got = zip_source_read(buffer, bytes.data(), stat.size);
    zip_source_close(buffer);
    if (got < 0 || static_cast<zip_uint64_t>(got) != stat.size)
      bytes.clear();
  }
  zip_source_free(buffer);
  if (bytes.empty())
    throw ScoreError("cannot write " + path.string() + ": the archive could not be assembled");
  return bytes;
}

} // namespace

bool IsCompressedName(const fs::path& path) {
  return Lower(path.extension().string()) == ".mxl";
}

ImportedScore ReadScoreFile(const fs::path& path) {
  std::string bytes = ReadWholeFile(path);
  // A zip archive starts with "PK\3\4", whatever its name says.
  if (bytes.size() >= 4 && bytes.compare(0, 4, "PK\x03\x04", 4) == 0)
    return ReadArchive(bytes, path);
  return ImportMusicXml(bytes, path.string());
}

// The text is written as UTF-8 whatever the input was, so the declaration must say so.
static void SetUtf8Declaration(const MusicXmlSource& source) {
  for (auto node : source.doc->children()) {
    if (node.type() == pugi::node_declaration) {
      if (auto encoding = node.attribute("encoding"))
        encoding.set_value("UTF-8");
      break;
    }
  }
}

std::string SerializeScore(const MusicXmlSource& source) {
  SetUtf8Declaration(source);
  // Straight into one string: an ostringstream would copy the whole score once more.
  struct StringWriter : pugi::xml_writer {
    std::string text;
    void write(const void* data, size_t size) override {
      text.append(static_cast<const char*>(data), size);
    }
  } writer;
  source.doc->save(writer, "  ", pugi::format_default, pugi::encoding_utf8);
  return std::move(writer.text);
}

void WriteScoreFile(const MusicXmlSource& source, const fs::path& path) {
  if (IsCompressedName(path)) {
    WriteFileAtomically(path, BuildArchive(source, SerializeScore(source), path));
    return;
  }
  SetUtf8Declaration(source);
  // Plain MusicXML goes straight from the tree into the file, without a copy in memory.
  WriteFileAtomically(path, [&source](FILE* file) {
    pugi::xml_writer_file writer(file);
    source.doc->save(writer, "  ", pugi::format_default, pugi::encoding_utf8);
  });
}

void WriteFileAtomically(const fs::path& path, const std::string& bytes) {
  WriteFileAtomically(path, [&bytes](FILE* file) {
    if (!bytes.empty())
      std::fwrite(bytes.data(), 1, bytes.size(), file);
  });
}

void WriteFileAtomically(const fs::path& path, const std::function<void(FILE*)>& fill) {
  fs::path folder = path.parent_path().empty() ? fs::path(".") : path.parent_path();
  std::error_code ec;
  if (fs::is_directory(path, ec))
    throw ScoreError("cannot write " + path.string() + ": it is a folder");
  std::string pattern = (folder / ("." + path.filename().string() + ".XXXXXX")).string();
  int fd = mkstemp(pattern.data());
  if (fd < 0)
    throw ScoreError("cannot write " + path.string() + ": " + std::strerror(errno));
  // mkstemp creates the file private to its owner; give it the usual permissions.
  mode_t mask = umask(0);
  umask(mask);
  fchmod(fd, 0666 & ~mask);
  FILE* file = fdopen(fd, "wb");
  if (!file) {
    int failure = errno;
    close(fd);
    unlink(pattern.c_str());
    throw ScoreError("cannot write " + path.string() + ": " + std::strerror(failure));
  }
  int failure = 0;
  try {
    fill(file);
  } catch (...) {
    std::fclose(file);
    unlink(pattern.c_str());
    throw;
  }
  if (std::fflush(file) != 0 || std::ferror(file))
    failure = errno ? errno : EIO;
  if (!failure && fsync(fileno(file)) != 0)
    failure = errno;
  if (std::fclose(file) != 0 && !failure)
    failure = errno;
  if (!failure && rename(pattern.c_str(), path.c_str()) != 0)
    failure = errno;
  if (failure) {
    unlink(pattern.c_str());
    throw ScoreError("cannot write " + path.string() + ": " + std::strerror(failure));
  }
}

} // namespace scribo::musicxml
