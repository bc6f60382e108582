// ELF files from a text description, whole ones and damaged ones.
#pragma once

#include <string>
#include <string_view>

// The bytes of the file that description describes, one item a line:
//
//     elf CLASS ORDER            first of all: 32 or 64, little or big
//     section TYPE KEY=VALUE...  begins section 1, 2, ...; section 0 is made of itself
//     text STRING                a string of a string table; each begins with the empty one
//     symbol NAME                an entry of a symbol table; so is the null symbol at its start
//     needed NAME, rpath NAME, runpath NAME
//                                an entry of a dynamic section
//     tag NUMBER VALUE           any other entry; "tag 0 0" is the end, which is not made of itself
//     drop COUNT                 takes bytes off the end of the section
//     set FIELD=VALUE            overrules a field of the ELF header: shoff, shentsize, shnum
//     byte OFFSET=VALUE          overrules a byte of the file
//     end SIZE                   cuts the file, or fills it up with NUL bytes
//
// TYPE is null, strtab, symtab, dynsym, dynamic, progbits, nobits or a number. Keys are name,
// offset, size, link and entsize, which overrule what fits the contents. NAME is looked up in, and
// added to, the string table that the section links to, which must stand in front of it; "@5" is
// the bare offset 5, and "-" the empty name. std::runtime_error for a line that makes no sense.
std::string elfImage(std::string_view description);
