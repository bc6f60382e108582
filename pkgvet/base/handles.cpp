// How each C handle is released.
#include "pkgvet/base/handles.h"

#include <glib.h>
#include <json-glib/json-glib.h>
#include <libxml/parser.h>
#include <libxml/tree.h>
#include <libxml/xmlschemas.h>
#include <rpm/header.h>
#include <rpm/rpmds.h>
#include <rpm/rpmfi.h>
#include <rpm/rpmio.h>
#include <rpm/rpmtd.h>
#include <rpm/rpmts.h>

namespace pkgvet {

void HandleDeleter::operator()(std::FILE* stream) const {
    std::fclose(stream);
}

void HandleDeleter::operator()(char* text) const {
    g_free(text);
}

void HandleDeleter::operator()(char** list) const {
    g_strfreev(list);
}

void HandleDeleter::operator()(_GError* error) const {
    g_error_free(error);
}

void HandleDeleter::operator()(_GKeyFile* keyFile) const {
    g_key_file_unref(keyFile);
}

void HandleDeleter::operator()(_GMatchInfo* info) const {
    g_match_info_unref(info);
}

void HandleDeleter::operator()(_GRegex* regex) const {
    g_regex_unref(regex);
}

void HandleDeleter::operator()(_JsonParser* parser) const {
    g_object_unref(parser);
}

void HandleDeleter::operator()(_FD_s* file) const {
    Fclose(file);
}

void HandleDeleter::operator()(headerToken_s* header) const {
    headerFree(header);
}

void HandleDeleter::operator()(rpmds_s* dependencies) const {
    rpmdsFree(dependencies);
}

void HandleDeleter::operator()(rpmfi_s* files) const {
    rpmfiFree(files);
}

// rpmtdFree leaves the data behind the container alone.
void HandleDeleter::operator()(rpmtd_s* container) const {
    rpmtdFreeData(container);
    rpmtdFree(container);
}

void HandleDeleter::operator()(rpmts_s* transactions) const {
    rpmtsFree(transactions);
}

void HandleDeleter::operator()(_xmlDoc* document) const {
    xmlFreeDoc(document);
}

void HandleDeleter::operator()(_xmlParserCtxt* parser) const {
    xmlFreeParserCtxt(parser);
}

void HandleDeleter::operator()(_xmlSchema* schema) const {
    xmlSchemaFree(schema);
}

void HandleDeleter::operator()(_xmlSchemaParserCtxt* parser) const {
    xmlSchemaFreeParserCtxt(parser);
}

void HandleDeleter::operator()(_xmlSchemaValidCtxt* validator) const {
    xmlSchemaFreeValidCtxt(validator);
}

}  // namespace pkgvet
