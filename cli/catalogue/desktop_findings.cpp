// The catalogue: findings on the desktop file as such.
#include "cli/catalogue/catalogue_tables.h"
#include "pkgvet/desktop/desktop_messages.h"

namespace pkgvet::cli {

namespace {

constexpr Entry kEntries[] = {
    {.id = "desktop-file-missing",
     .title = "Package has no desktop file",
     .demand = "The package installs /usr/share/applications/NAME.desktop, where NAME is the name "
               "of the package.",
     .why = "From this file the platform learns how the application is called and started, and "
            "under which permissions it runs.",
     .fix = "Install the file in the .spec file and list it under `%files`. If there is one, its "
            "name is not the package's: rename it.",
     .example = "%install\n"
                "install -D -m 0644 pilot.desktop \\\n"
                "    %{buildroot}%{_datadir}/applications/%{name}.desktop\n"
                "\n"
                "%files\n"
                "%{_datadir}/applications/%{name}.desktop\n",
     .relatedIds = {"path-not-allowed", "main-binary-missing"},
     .message = &kDesktopFileMissing},
    {.id = "desktop-file-absent",
     .severity = Severity::Warning,
     .title = "Package has no desktop file, and need not have one",
     .demand = "Under this profile a package may do without "
               "/usr/share/applications/NAME.desktop, where NAME is the name of the package.",
     .why = "The sandbox section stands in this file, so that none is judged without it.",
     .fix = "Nothing, if the package is not to be started by the user. Otherwise install the file "
            "and list it under `%files` in the .spec file.",
     .example = "%files\n"
                "%{_datadir}/applications/%{name}.desktop\n",
     .relatedIds = {"desktop-file-missing"},
     .message = &kDesktopFileMissingIsTolerated},
    {.id = "desktop-group-not-allowed",
     .title = "Desktop file has a group that is not allowed",
     .demand = "The only groups of the desktop file are `Desktop Entry`, `X-Application`, "
               "`X-Tessara-Application`, `X-Tessara-SplashScreen`, `X-Task NAME`, "
               "`X-Service NAME`, and `X-Share Method NAME` for each NAME in `X-Share-Methods` of "
               "`Desktop Entry`.",
     .why = "The platform acts on what it finds there, so that nothing unknown may stand in it.",
     .fix = "Remove the group from the desktop file, or correct its name: upper and lower case "
            "count, and `X-Task`, `X-Service` and `X-Share Method` are followed by a blank and a "
            "name. A share method must be listed in `X-Share-Methods` as well.",
     .example = "[Desktop Entry]\n"
                "X-Share-Methods=track;\n"
                "\n"
                "[X-Share Method track]\n"
                "Description=Send as a track\n",
     .relatedIds = {"task-name-invalid", "sandbox-section-missing"},
     .message = &kGroupDisallowed},
    {.id = "qml-only-application",
     .severity = Severity::Info,
     .title = "Application has no program of its own",
     .demand = "Nothing: this remark says how the application is judged.",
     .why = "`Exec` starts a QML launcher. Such a package must not install a program under its "
            "own name, must require the launcher, and should be noarch.",
     .fix = "Nothing, if the application is written in QML alone. If it has a program, start that "
            "one.",
     .example = "Exec=/usr/bin/org.example.pilot\n",
     .relatedIds = {"main-binary-unwanted", "launcher-requires-missing", "qml-only-not-noarch",
                    "application-type-qml-only"},
     .message = &kIsQmlOnly},
    {.id = "application-type-qml-only",
     .title = "QML-only application has the wrong type",
     .demand = "`X-Dorrit-Application-Type` is `ostrand-qt5` where `Exec` starts a QML launcher.",
     .why = "The type selects the process that the launcher keeps ready, and only this one can "
            "show QML.",
     .fix = "Set the key in the group `Desktop Entry` of the desktop file.",
     .example = "[Desktop Entry]\n"
                "Exec=lumbra-qml org.example.pilot\n"
                "X-Dorrit-Application-Type=ostrand-qt5\n",
     .relatedIds = {"qml-only-application"},
     .message = &kQmlOnlyTypeWrong},
    {.id = "application-type-not-recommended",
     .severity = Severity::Warning,
     .title = "Application type is not the recommended one",
     .demand = "`X-Dorrit-Application-Type` should be `ostrand-qt5`. The types `generic`, "
               "`no-invoker`, `qtquick2` and `qt5` are tolerated.",
     .why = "With `ostrand-qt5` the launcher starts the application out of a prepared process, "
            "which is faster.",
     .fix = "Set the key in the group `Desktop Entry` of the desktop file if the application uses "
            "the toolkit. If it does not, leave the type as it is.",
     .example = "[Desktop Entry]\n"
                "X-Dorrit-Application-Type=ostrand-qt5\n",
     .relatedIds = {"main-not-exported", "application-type-missing"},
     .message = &kTypeNotRecommended},
    {.id = "application-type-missing",
     .title = "Application type is missing or unknown",
     .demand = "`X-Dorrit-Application-Type` is `ostrand-qt5`, or else `generic`, `no-invoker`, "
               "`qtquick2` or `qt5`.",
     .why = "The type selects the process in which the launcher starts the application.",
     .fix = "Set the key in the group `Desktop Entry` of the desktop file. If it is there, the "
            "file as a whole is not a valid key file, or the value is not one of these words.",
     .example = "[Desktop Entry]\n"
                "X-Dorrit-Application-Type=ostrand-qt5\n",
     .relatedIds = {"desktop-name-missing", "desktop-exec-invalid", "desktop-type-invalid"},
     .message = &kTypeNotDeclared},
    {.id = "desktop-name-missing",
     .title = "Desktop file has no name",
     .demand = "`Name` in the group `Desktop Entry` is not empty. A translation such as "
               "`Name[de]` does not stand in for it.",
     .why = "It is what the user sees under the icon.",
     .fix = "Set the key in the desktop file. If it is there, the file is not valid UTF-8 or not "
            "a valid key file; `desktop-file-validate` tells where.",
     .example = "[Desktop Entry]\n"
                "Name=Pilot\n"
                "Name[de]=Flugbuch\n",
     .relatedIds = {"desktop-name-unprintable"},
     .message = &kNameMissing},
    {.id = "desktop-name-unprintable",
     .title = "Name in the desktop file has no ASCII character",
     .demand = "`Name` in the group `Desktop Entry` holds at least one printable ASCII "
               "character.",
     .why = "This form of the name is shown to users of every language, and by tools that can "
            "show no other characters.",
     .fix = "Write a Latin form into `Name`, and the others into its translations.",
     .example = "[Desktop Entry]\n"
                "Name=Pilot\n"
                "Name[ru]=Пилот\n",
     .relatedIds = {"desktop-name-missing"},
     .message = &kNameIllegal},
    {.id = "desktop-icon-invalid",
     .title = "Icon in the desktop file is not the package's name",
     .demand = "`Icon` in the group `Desktop Entry` is the name of the package, with neither path "
               "nor suffix.",
     .why = "The icon is looked up in the theme by this name, in the size that the screen needs.",
     .fix = "Set the key in the desktop file, and install the icons under the same name.",
     .example = "[Desktop Entry]\n"
                "Icon=org.example.pilot\n",
     .relatedIds = {"icon-missing"},
     .message = &kIconMissing},
    {.id = "desktop-exec-invalid",
     .title = "Exec in the desktop file does not start the application",
     .demand = "`Exec` in the group `Desktop Entry` is `NAME`, `/usr/bin/NAME`, `lumbra-qml NAME` "
               "or `tessara-qml NAME`, where NAME is the name of the package. A blank and "
               "arguments may follow.",
     .why = "The sandbox is set up for the program of that name and no other.",
     .fix = "Set the key in the desktop file, and install the program as /usr/bin/NAME. Start "
            "neither a shell nor another wrapper.",
     .example = "[Desktop Entry]\n"
                "Exec=/usr/bin/org.example.pilot --log\n",
     .relatedIds = {"main-binary-missing", "main-binary-not-executable"},
     .message = &kExecMissing},
    {.id = "desktop-type-invalid",
     .title = "Desktop file does not describe an application",
     .demand = "`Type` in the group `Desktop Entry` is `Application`.",
     .why = "Only then is it offered to the user for starting.",
     .fix = "Set the key in the desktop file.",
     .example = "[Desktop Entry]\n"
                "Type=Application\n",
     .relatedIds = {"desktop-name-missing", "desktop-exec-invalid"},
     .message = &kTypeMissing},
    {.id = "desktop-key-not-allowed",
     .title = "Group of the desktop file has a key that is not allowed",
     .demand =
         "The only keys of `X-Tessara-Application` are `Orientation`, `SmallScreenOrientation`, "
         "`MediumScreenOrientation`, `LargeScreenOrientation`, "
         "`ExtraLargeScreenOrientation` and `IconMode`; those of `X-Tessara-SplashScreen` "
         "are `GradientStartColor` and `GradientEndColor`.",
     .why = "The platform acts on what it finds there, so that nothing unknown may stand in it.",
     .fix = "Remove the key from the group that the finding names, or correct its name: upper and "
            "lower case count, and a language in brackets is not allowed.",
     .example = "[X-Tessara-SplashScreen]\n"
                "GradientStartColor=#186090\n"
                "GradientEndColor=#CDDEE8\n",
     .relatedIds = {"desktop-value-not-allowed", "desktop-color-invalid"},
     .message = &kFieldNameInvalid},
    {.id = "desktop-color-invalid",
     .title = "Colour in the desktop file is not in hexadecimal form",
     .demand = "`GradientStartColor` and `GradientEndColor` are colours of the form `#RRGGBB` or "
               "`#RGB`.",
     .why = "The splash screen is drawn before any toolkit is there that knows colours by name.",
     .fix = "Write the colour as `#` and six hexadecimal digits in the group "
            "`X-Tessara-SplashScreen` of the desktop file, without quotes.",
     .example = "[X-Tessara-SplashScreen]\n"
                "GradientStartColor=#186090\n",
     .relatedIds = {"desktop-key-not-allowed"},
     .message = &kColorInvalid},
    {.id = "desktop-value-not-allowed",
     .title = "Key of the desktop file has a value that is not allowed",
     .demand = "In `X-Tessara-Application`, `Orientation` and its four forms for sizes of screens "
               "are `None`, `All`, `PortraitMask`, `LandscapeMask`, `Portrait`, `Landscape`, "
               "`PortraitInverted`, `LandscapeInverted` or several of these with semicolons "
               "between them; `IconMode` is `Scale` or `Crop`.",
     .why = "The platform turns the screen and draws the icon by these words and knows no others.",
     .fix = "Correct the value in the desktop file: upper and lower case count.",
     .example = "[X-Tessara-Application]\n"
                "Orientation=Portrait;Landscape\n"
                "IconMode=Crop\n",
     .relatedIds = {"desktop-key-not-allowed"},
     .message = &kValueInvalid},
};

}  // namespace

Chapter desktopChapter() {
    return {"Desktop file", kEntries};
}

}  // namespace pkgvet::cli
