// Judges one package by the names that the installed headers give.
#include <pkgvet/content/content_validator.h>
#include <pkgvet/meta/meta_validator.h>
#include <pkgvet/package/rpm_meta.h>
#include <pkgvet/rules/configuration.h>

#include <iostream>

int main(int argc, char** argv) {
    if (argc != 3) {
        return 2;
    }
    const Configuration configuration(argv[1], Profiles::Regular);
    const RpmMeta meta(argv[2]);
    MetaValidator header;
    ContentValidator content(argv[2]);
    const bool headerAccepted = header.validateMeta(configuration, meta);
    const bool contentAccepted = content.validateContent(configuration, meta);
    std::cout << meta.name() << (headerAccepted && contentAccepted ? " accepted\n" : " rejected\n");
    return 0;
}
