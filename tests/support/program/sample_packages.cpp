#include "tests/support/program/sample_packages.h"

#include "tests/support/elf/compiled_elf.h"
#include "tests/support/package/package_builder.h"

namespace {

constexpr const char* kAgentDesktopFile = R"([Desktop Entry]
Type=Link
Exec=/opt/run

[X-Application]
[X-Pinfold]
[Pinfold]
OrganizationName=1Example
ApplicationName=bad agent-.task_x
Permissions=Internet;RootShell
ExecDBus=/opt/service --session
ExecSystemService=/opt/service
ExecSystemServiceUser=root
ExecSystemServiceGroup=root
Intents=open;Fly;OpenURI:fast
Colour=blue

[X-Tessara-Application]
Orientation=Sideways
Colour=blue

[X-Tessara-SplashScreen]
GradientStartColor=blue

[X-Task x-y]
Type=hourly
Exec=/usr/libexec/org.example.agent/sync
Permissions=Audio;BaseTask;Location
Conditions=Charging;moonlight;internet:bluetooth
Restart=always

[X-Task two]
Type=worker
Exec=org.example.agent.2

[X-Launcher]
Autostart=true
)";

constexpr const char* kHelperDesktopFile = R"([Desktop Entry]
Type=Application
Name=Ж
Icon=org.example.helper
Exec=org.example.helper
X-Dorrit-Application-Type=generic

[X-Pinfold]
OrganizationName=org.example
ApplicationName=help-er
ExecSystemServiceUser=lumbra-mdm
)";

constexpr const char* kPageDesktopFile = R"([Desktop Entry]
Type=Application
Name=Page
Icon=org.example.page
Exec=lumbra-qml org.example.page
X-Dorrit-Application-Type=generic
)";

std::string desktopPath(const std::string& name) {
    return "/usr/share/applications/" + name + ".desktop";
}

// Nothing in its header and among its files is as it should be, and it has no desktop file.
PackageBuilder careless() {
    const std::string data = "/usr/share/careless/";
    PackageBuilder package("careless");
    package.tag("Provides: other").tag("Conflicts: other").tag("Obsoletes: older");
    package.tag("Vendor: Acme").tag("Requires: old-library").tag("Requires: foreign");
    package.tag("Requires: liblumbraapp-launcher").script("%post\ntrue");
    package.file("/etc/sealwatchd/config.d/careless.json", "{");
    package.file("/opt/notes.swp", "").file("/usr/lib/debug/symbols", "").directory("/usr/bin");
    package.file(data + "run.sh", "#!/bin/sh\n", "0755").file(data + "suid", "", "4644");
    package.file(data + "open", "", "0666").file(data + "foreign", "", "0644", "nobody", "nobody");
    package.file(data + "home.txt", "/home/defaultuser/x").directory(data + "empty");
    package.file(data + "managed-configuration/configuration.xml", "<a>");
    package.ghost(data + "cache").link(data + "current", "/nowhere/else");
    return package;
}

PackageBuilder agent() {
    PackageBuilder package("org.example.agent");
    package.tag("Vendor: pelzo").file(desktopPath("org.example.agent"), kAgentDesktopFile);
    return package;
}

PackageBuilder helper() {
    PackageBuilder package("org.example.helper");
    package.file(desktopPath("org.example.helper"), kHelperDesktopFile);
    return package;
}

// In QML alone, and yet for one architecture and with something where its program would be.
PackageBuilder page() {
    const std::string name = "org.example.page";
    PackageBuilder package(name);
    package.native().file(desktopPath(name), kPageDesktopFile).file("/usr/bin/" + name, "");
    package.file("/usr/share/" + name + "/qml/page.qml",
                 "import QtQuick 1.0\nimport QtQuick 3.0\n");
    package.file("/etc/sealwatchd/config.d/" + name + ".json", R"({"watch": ["/etc/passwd"]})");
    return package;
}

std::string compileLibrary(const TemporaryDirectory& directory, const std::string& name) {
    return compileElf(directory, name, "int value;", {"-shared", "-fPIC", "-Wl,-soname," + name});
}

// Links one library of each standing, and has no run path to its own.
PackageBuilder tool(const TemporaryDirectory& directory) {
    const std::string name = "org.example.tool";
    std::vector<std::string> flags = {"-s", "-Wl,--no-as-needed"};
    for (const char* library : {"libunstable.so.1", "libforeign.so.1", "libown.so.1"}) {
        flags.push_back(compileLibrary(directory, library));
    }
    const std::string program = compileElf(directory, "tool", "int main() { return 0; }", flags);
    PackageBuilder package(name);
    package.copy("/usr/bin/" + name, program).copy("/opt/tool", program);
    package.copy("/usr/share/" + name + "/lib/libown.so.1", directory / "libown.so.1");
    return package;
}

PackageBuilder reader(const TemporaryDirectory& directory) {
    const std::string name = "org.example.reader";
    PackageBuilder package(name);
    package.native().copy("/usr/bin/" + name,
                          compileElf(directory, "reader", "int main() { return 0; }",
                                     {"-Wl,--disable-new-dtags,-rpath,/opt/nowhere"}));
    package.file("/usr/share/" + name + "/qml/reader.qml", "import Lumbra.Ostrand 1.0\n");
    return package;
}

// Judged under a profile that is lenient with it.
PackageBuilder token() {
    PackageBuilder package("org.example.token");
    package.file("/usr/share/org.example.token/open", "", "0666");
    return package;
}

}  // namespace

RuleTree sampleRules() {
    RuleTree tree;
    tree.iconSizes = {86};
    tree.disallowedPatterns = {"Qt.*"};
    tree.regular().requireDesktop = true;
    tree.regular().requireIcons = true;
    tree.regular().libraries.allowed = {R"(lib(c|m|gcc_s|stdc\+\+)\.so\..*)"};
    tree.regular().libraries.unstable = {R"(libunstable\.so\.1)"};
    tree.regular().requires_.deprecated = {"old-library"};
    tree.regular().qmlimports.unstable = {R"(QtQuick 1\.0)"};
    tree.regular().permissions = {"Internet"};
    tree.profiles[static_cast<std::size_t>(Profiles::Mdm)].provides = "mdm-provider";
    return tree;
}

std::vector<SamplePackage> buildSamples(const TemporaryDirectory& directory) {
    return {
        {careless().build(directory), Profiles::Regular},
        {agent().build(directory), Profiles::Mdm},
        {helper().build(directory), Profiles::Mdm},
        {page().build(directory), Profiles::Regular},
        {tool(directory).build(directory), Profiles::Regular},
        {reader(directory).build(directory), Profiles::Regular},
        {token().build(directory), Profiles::Auth},
    };
}
