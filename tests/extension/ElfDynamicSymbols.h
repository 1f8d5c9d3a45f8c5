// The names an ELF shared object defines in its dynamic symbol table: what a by-name lookup in
// the loaded image can find.
#pragma once

#include <elf.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

namespace scribotest {

// Defined (not undefined) global and weak symbols of .dynsym; throws on a file that is not a
// 64-bit little-endian ELF object.
inline std::set<std::string> DefinedDynamicSymbols(const std::filesystem::path& file) {
  std::ifstream in(file, std::ios::binary);
  if (!in)
    throw std::runtime_error("cannot open " + file.string());
  const std::vector<char> image((std::istreambuf_iterator<char>(in)),
                                std::istreambuf_iterator<char>());

  auto read = [&](size_t offset, auto& value) {
    if (offset + sizeof value > image.size())
      throw std::runtime_error("truncated ELF object " + file.string());
    std::memcpy(&value, image.data() + offset, sizeof value);
  };
  Elf64_Ehdr header;
  read(0, header);
  if (std::memcmp(header.e_ident, ELFMAG, SELFMAG) != 0 || header.e_ident[EI_CLASS] != ELFCLASS64 ||
      header.e_ident[EI_DATA] != ELFDATA2LSB)
    throw std::runtime_error("not a 64-bit little-endian ELF object: " + file.string());

  std::vector<Elf64_Shdr> sections(header.e_shnum);
  for (size_t i = 0; i < sections.size(); ++i)
    read(header.e_shoff + i * header.e_shentsize, sections[i]);

  std::set<std::string> names;
  for (const Elf64_Shdr& section : sections) {
    if (section.sh_type != SHT_DYNSYM)
      continue;
    const Elf64_Shdr& strings = sections.at(section.sh_link);
    for (size_t offset = 0; offset + sizeof(Elf64_Sym) <= section.sh_size;
         offset += sizeof(Elf64_Sym)) {
      Elf64_Sym symbol;
      read(section.sh_offset + offset, symbol);
      const unsigned binding = ELF64_ST_BIND(symbol.st_info);
      if (symbol.st_shndx == SHN_UNDEF || (binding != STB_GLOBAL && binding != STB_WEAK))
        continue;
      if (symbol.st_name >= strings.sh_size)
        throw std::runtime_error("bad symbol name offset in " + file.string());
      names.insert(image.data() + strings.sh_offset + symbol.st_name);
    }
  }
  return names;
}

} // namespace scribotest
