// The catalogue: findings on programs and libraries.
#include "cli/catalogue/catalogue_tables.h"
#include "pkgvet/elf/binary_messages.h"

namespace pkgvet::cli {

namespace {

constexpr Entry kEntries[] = {
    {.id = "arch-content-in-noarch",
     .severity = Severity::Warning,
     .title = "Package for all architectures holds machine code",
     .demand = "A package with compiled programs or libraries is not noarch.",
     .why = "It can be installed on a device whose processor does not understand it.",
     .fix = "Remove `BuildArch: noarch` from the .spec file. If the code was not meant to be in "
            "the package, remove it.",
     .example = "# Remove from the .spec file:\n"
                "BuildArch: noarch\n",
     .relatedIds = {"qml-only-not-noarch"},
     .message = &kShouldNotBeNoarch},
    {.id = "executable-wrong-format",
     .title = "Executable file is not a program of this platform",
     .demand = "Each file that its owner may execute is an ELF file in little-endian byte order.",
     .why = "Scripts need an interpreter, which is not part of the platform's interface, and "
            "programs in the other byte order do not run.",
     .fix = "If the file is data, such as a script that the application reads, take its execute "
            "permission away in the .spec file. If it is a program, compile it for the device. "
            "Do not start shell scripts: let the application do what they do.",
     .example = "install -D -m 0644 rules.js %{buildroot}%{_datadir}/%{name}/rules.js\n",
     .relatedIds = {"file-executable", "main-binary-not-executable"},
     .message = &kExecutableBadFormat},
    {.id = "executable-wrong-location",
     .title = "Program lies in a place that is not for programs",
     .demand = "Programs lie at /usr/bin/NAME or in /usr/libexec/NAME/, where NAME is the name of "
               "the package. Libraries may lie elsewhere if `.so` is in their path.",
     .why = "These are the places from which the sandbox lets programs be started.",
     .fix =
         "Install helper programs into `%{_libexecdir}/%{name}/` in the .spec file and start them "
         "from there. A library must have `.so` in its name.",
     .example = "install -D -m 0755 helper %{buildroot}%{_libexecdir}/%{name}/helper\n",
     .relatedIds = {"file-executable", "path-not-allowed"},
     .message = &kExecutableBadLocation},
    {.id = "main-binary-not-executable",
     .title = "Main program is missing or is not an executable program",
     .demand = "At /usr/bin/NAME, where NAME is the name of the package, lies an ELF file in "
               "little-endian byte order that its owner may execute, unless the application is "
               "written in QML alone.",
     .why = "This is what the platform starts.",
     .fix = "Install the program under this name with mode 0755 in the .spec file. A script, a "
            "link to a script or a file without execute permission is not enough. For an "
            "application in QML alone, let `Exec` in the desktop file start `lumbra-qml NAME`.",
     .example = "install -D -m 0755 pilot %{buildroot}%{_bindir}/%{name}\n",
     .relatedIds = {"main-binary-missing", "executable-wrong-format", "desktop-exec-invalid"},
     .message = &kMainBinaryMustBeExecutable},
    {.id = "library-unstable",
     .severity = Severity::Warning,
     .title = "Program links a library that is unstable or deprecated",
     .demand = "The main program links only libraries that the rule files list as allowed. This "
               "one is listed as unstable or deprecated and is tolerated.",
     .why = "An unstable interface may change and a deprecated one may go, and the application "
            "then stops working.",
     .fix = "Remove the library from the link line in the build files and use its successor; "
            "`pkgvet rules show` prints what is allowed. If the code does not call it, let the "
            "linker leave it out.",
     .example = "# In the qmake project; in CMake: target_link_options(pilot PRIVATE "
                "-Wl,--as-needed)\n"
                "QMAKE_LFLAGS += -Wl,--as-needed\n",
     .relatedIds = {"dependency-unstable", "library-not-allowed"},
     .message = &kLibraryUnstable},
    {.id = "library-not-allowed",
     .title = "Program links a library that is not allowed",
     .demand = "Each library that the main program links is listed in the rule files of the "
               "profile, in this very version, or is carried by the package in its own library "
               "directory.",
     .why = "Only what is listed is part of the platform's interface and there on each device.",
     .fix =
         "If the code does not call the library, let the linker leave it out with "
         "`-Wl,--as-needed`. Otherwise install it into `%{_datadir}/%{name}/lib/` under the name "
         "that the finding gives, link the program with a run path that leads there, and "
         "exclude it from what rpmbuild declares. `pkgvet rules show` prints what is allowed.",
     .example = "%global __provides_exclude ^libroute\\\\.so.*$\n"
                "%global __requires_exclude ^libroute\\\\.so.*$\n"
                "\n"
                "%build\n"
                "g++ -rdynamic main.cpp libroute.so.1 -o pilot \\\n"
                "    -Wl,--disable-new-dtags,-rpath,%{_datadir}/%{name}/lib\n"
                "\n"
                "%install\n"
                "install -D -m 0755 libroute.so.1 %{buildroot}%{_datadir}/%{name}/lib/"
                "libroute.so.1\n",
     .relatedIds = {"dependency-not-allowed", "rpath-missing", "provide-not-allowed"},
     .message = &kLibraryNotAllowed},
    {.id = "rpath-empty",
     .severity = Severity::Warning,
     .title = "Program has no run path",
     .demand = "The main program has a DT_RPATH if it links libraries that the package carries.",
     .why = "Without it such a library is not found.",
     .fix = "Nothing, if the package carries no libraries. Otherwise link the program with a run "
            "path. Linkers write DT_RUNPATH by default, which does not count: "
            "`--disable-new-dtags` makes it DT_RPATH. See that no later step of the build, such as "
            "`chrpath -d` or CMake's install, takes it away; `readelf -d` shows it.",
     .example = "# In the qmake project:\n"
                "QMAKE_LFLAGS += -Wl,--disable-new-dtags,-rpath,/usr/share/org.example.pilot/lib\n"
                "# In CMakeLists.txt:\n"
                "set_target_properties(pilot PROPERTIES INSTALL_RPATH "
                "/usr/share/org.example.pilot/lib)\n"
                "target_link_options(pilot PRIVATE -Wl,--disable-new-dtags)\n",
     .relatedIds = {"rpath-missing", "library-not-allowed"},
     .message = &kRpathEmpty},
    {.id = "rpath-not-allowed",
     .title = "Program has a run path that is not allowed",
     .demand =
         "The run path of the main program leads to /usr/share/NAME/lib, /usr/share/NAME/libs, "
         "$ORIGIN/../share/NAME/lib, /usr/lib/3rdparty/NAME, below one of these, or below "
         "/usr/lib/ or /usr/lib64/, where NAME is the name of the package.",
     .why = "Whoever may write to a directory of the run path decides what code runs in the "
            "application.",
     .fix = "Correct the run path in the build files. Often it is a directory of the build machine "
            "that was left behind: in CMake set `CMAKE_SKIP_BUILD_RPATH`, or set it anew "
            "with `patchelf --force-rpath --set-rpath`. `readelf -d` shows it.",
     .example = "g++ -rdynamic main.cpp libroute.so.1 -o pilot \\\n"
                "    -Wl,--disable-new-dtags,-rpath,/usr/share/org.example.pilot/lib\n",
     .relatedIds = {"rpath-missing", "library-not-allowed"},
     .message = &kRpathNotAllowed},
    {.id = "rpath-missing",
     .title = "Program has no run path to the libraries of its package",
     .demand = "The main program has a DT_RPATH, since it links a library that the package "
               "carries.",
     .why = "Without it the library is not found, or another one of that name is.",
     .fix = "Link the program with a run path to the directory of the libraries. Linkers write "
            "DT_RUNPATH by default, which does not count: `--disable-new-dtags` makes it "
            "DT_RPATH. `readelf -d` shows it.",
     .example = "# In the qmake project:\n"
                "QMAKE_LFLAGS += -Wl,--disable-new-dtags,-rpath,/usr/share/org.example.pilot/lib\n"
                "# In CMakeLists.txt:\n"
                "set_target_properties(pilot PROPERTIES INSTALL_RPATH "
                "/usr/share/org.example.pilot/lib)\n"
                "target_link_options(pilot PRIVATE -Wl,--disable-new-dtags)\n",
     .relatedIds = {"rpath-empty", "library-not-allowed"},
     .message = &kRpathMissing},
    {.id = "qml-only-not-noarch",
     .severity = Severity::Warning,
     .title = "Package without machine code is not for all architectures",
     .demand = "A package of an application in QML alone is noarch, unless it holds machine code.",
     .why = "One package then serves all devices.",
     .fix = "Add `BuildArch: noarch` to the .spec file.",
     .example = "BuildArch: noarch\n",
     .relatedIds = {"qml-only-application", "arch-content-in-noarch"},
     .message = &kQmlOnlyShouldBeNoarch},
    {.id = "launcher-requires-not-allowed",
     .title = "Package requires the QML launcher but does not need it",
     .demand = "Only a package whose desktop file starts a QML launcher requires "
               "`liblumbraapp-launcher` or `libtessaraapp-launcher`.",
     .why = "An application with a program of its own is not started by it.",
     .fix = "Remove the `Requires` from the .spec file. If the application is written in QML "
            "alone, let `Exec` in the desktop file start `lumbra-qml NAME`, where NAME is the "
            "name of the package.",
     .example = "# Remove from the .spec file:\n"
                "Requires: liblumbraapp-launcher\n",
     .relatedIds = {"desktop-exec-invalid"},
     .message = &kInvalidRequires},
    {.id = "launcher-requires-missing",
     .title = "Package does not require the QML launcher",
     .demand = "A package whose desktop file starts a QML launcher requires "
               "`libtessaraapp-launcher` or `liblumbraapp-launcher`.",
     .why = "Without the launcher the application cannot be started.",
     .fix = "Add the `Requires` to the .spec file.",
     .example = "Requires: libtessaraapp-launcher\n",
     .relatedIds = {"qml-only-application"},
     .message = &kAddRequires},
    {.id = "main-binary-not-a-program",
     .title = "Main program does not start like a program",
     .demand = "The name `__libc_start_main` stands among the symbols of the main program.",
     .why =
         "It is how an ordinary program enters the C library. Where it is missing, the file is "
         "a script or another file that is not a program, is linked statically, or starts at code "
         "that nobody can check.",
     .fix = "Build the program as an ordinary dynamically linked one: without `-static` and "
            "`-nostartfiles`, and install the program itself as /usr/bin/NAME, not a script that "
            "starts it.",
     .example = "%build\n"
                "g++ -pie -fPIE -rdynamic main.cpp -o pilot\n"
                "\n"
                "%install\n"
                "install -D -m 0755 pilot %{buildroot}%{_bindir}/%{name}\n",
     .relatedIds = {"main-binary-not-executable", "main-export-required"},
     .message = &kMainNotLinked},
    {.id = "main-not-exported",
     .severity = Severity::Warning,
     .title = "Main program does not export main()",
     .demand = "The main program should have `main` among its dynamic symbols.",
     .why = "The platform's launcher loads the program into a prepared process and calls its "
            "`main`. Without it the program may start slowly or not at all.",
     .fix = "Declare `main` with `Q_DECL_EXPORT` and link with `-rdynamic`. `nm -D` must show it.",
     .example = "// main.cpp\n"
                "Q_DECL_EXPORT int main(int argc, char* argv[])\n"
                "\n"
                "# The qmake project\n"
                "QMAKE_LFLAGS += -pie -rdynamic\n"
                "# or CMakeLists.txt\n"
                "set_target_properties(pilot PROPERTIES ENABLE_EXPORTS ON)\n",
     .relatedIds = {"main-export-required", "application-type-not-recommended"},
     .message = &kMainNotExported},
    {.id = "main-export-required",
     .title = "Main program does not export main(), which it must",
     .demand = "The main program of an application whose QML imports `Lumbra.Ostrand` has `main` "
               "among its dynamic symbols. So has a main program without any symbols.",
     .why = "The platform's launcher loads the program into a prepared process and calls its "
            "`main`.",
     .fix = "Declare `main` with `Q_DECL_EXPORT` and link with `-rdynamic`. `nm -D` must show it. "
            "If the file at /usr/bin/NAME is a script, install a program there.",
     .example = "// main.cpp\n"
                "Q_DECL_EXPORT int main(int argc, char* argv[])\n"
                "\n"
                "# The qmake project\n"
                "QMAKE_LFLAGS += -pie -rdynamic\n"
                "# or CMakeLists.txt\n"
                "set_target_properties(pilot PROPERTIES ENABLE_EXPORTS ON)\n",
     .relatedIds = {"main-not-exported", "main-binary-not-a-program"},
     .message = &kMainMustBeExported},
};

}  // namespace

Chapter binaryChapter() {
    return {"Programs and libraries", kEntries};
}

}  // namespace pkgvet::cli
