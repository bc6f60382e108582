// Owner types for the handles of the C libraries: whatever such a library hands out goes
// into one of these at first touch, so that it is released on every way out.
#pragma once

#include <cstdio>
#include <memory>

struct _GError;
struct _GKeyFile;
struct _GMatchInfo;
struct _GRegex;
struct _JsonParser;
struct _FD_s;
struct headerToken_s;
struct rpmds_s;
struct rpmfi_s;
struct rpmtd_s;
struct rpmts_s;
struct _xmlDoc;
struct _xmlParserCtxt;
struct _xmlSchema;
struct _xmlSchemaParserCtxt;
struct _xmlSchemaValidCtxt;

namespace pkgvet {

// Releases each kind of handle the way its library asks for. A null handle is never passed in,
// since std::unique_ptr calls its deleter for other values only.
struct HandleDeleter {
    void operator()(std::FILE* stream) const;
    void operator()(char* text) const;   // memory of g_malloc
    void operator()(char** list) const;  // string list of g_strfreev
    void operator()(_GError* error) const;
    void operator()(_GKeyFile* keyFile) const;
    void operator()(_GMatchInfo* info) const;
    void operator()(_GRegex* regex) const;
    void operator()(_JsonParser* parser) const;
    void operator()(_FD_s* file) const;
    void operator()(headerToken_s* header) const;
    void operator()(rpmds_s* dependencies) const;
    void operator()(rpmfi_s* files) const;
    void operator()(rpmtd_s* container) const;
    void operator()(rpmts_s* transactions) const;
    void operator()(_xmlDoc* document) const;
    void operator()(_xmlParserCtxt* parser) const;
    void operator()(_xmlSchema* schema) const;
    void operator()(_xmlSchemaParserCtxt* parser) const;
    void operator()(_xmlSchemaValidCtxt* validator) const;
};

using StreamHandle = std::unique_ptr<std::FILE, HandleDeleter>;
using GStringHandle = std::unique_ptr<char, HandleDeleter>;
using GStringListHandle = std::unique_ptr<char*, HandleDeleter>;
using GErrorHandle = std::unique_ptr<_GError, HandleDeleter>;
using KeyFileHandle = std::unique_ptr<_GKeyFile, HandleDeleter>;
using MatchInfoHandle = std::unique_ptr<_GMatchInfo, HandleDeleter>;
using RegexHandle = std::unique_ptr<_GRegex, HandleDeleter>;
using JsonParserHandle = std::unique_ptr<_JsonParser, HandleDeleter>;
using RpmFileHandle = std::unique_ptr<_FD_s, HandleDeleter>;
using HeaderHandle = std::unique_ptr<headerToken_s, HandleDeleter>;
using DependencySetHandle = std::unique_ptr<rpmds_s, HandleDeleter>;
using FileIteratorHandle = std::unique_ptr<rpmfi_s, HandleDeleter>;
using TagDataHandle = std::unique_ptr<rpmtd_s, HandleDeleter>;
using TransactionSetHandle = std::unique_ptr<rpmts_s, HandleDeleter>;
using XmlDocumentHandle = std::unique_ptr<_xmlDoc, HandleDeleter>;
using XmlParserHandle = std::unique_ptr<_xmlParserCtxt, HandleDeleter>;
using XmlSchemaHandle = std::unique_ptr<_xmlSchema, HandleDeleter>;
using XmlSchemaParserHandle = std::unique_ptr<_xmlSchemaParserCtxt, HandleDeleter>;
using XmlSchemaValidatorHandle = std::unique_ptr<_xmlSchemaValidCtxt, HandleDeleter>;

}  // namespace pkgvet
