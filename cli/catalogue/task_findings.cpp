// The catalogue: findings on intents and background tasks.
#include "cli/catalogue/catalogue_tables.h"
#include "pkgvet/desktop/desktop_messages.h"

namespace pkgvet::cli {

namespace {

constexpr Entry kEntries[] = {
    {.id = "intent-invalid",
     .title = "Intent is not written in the right form",
     .demand = "An intent is a name of at least two characters that begins with a capital or with "
               "`X-` and a capital, then perhaps `/` and a subject, then perhaps `:` and flags "
               "with `|` between them. Names, subjects and flags hold Latin letters, digits and "
               "hyphens only.",
     .why = "The platform calls the application by what it reads out of this text.",
     .fix = "Correct the element of `Intents` in the sandbox section of the desktop file. "
            "Elements are divided by semicolons; blanks are not allowed.",
     .example = "[X-Application]\n"
                "Intents=Start;OpenURI/text:gui;X-ShowRoute\n",
     .relatedIds = {"intent-not-standard", "intent-flag-unknown"},
     .message = &kIntentInvalid},
    {.id = "intent-name-missing",
     .title = "Intent has no name",
     .demand = "An intent begins with a name.",
     .why = "The platform calls the application by it.",
     .fix = "Put the name in front of the element of `Intents` in the sandbox section of the "
            "desktop file: `Start`, `OpenURI`, or a name of your own that begins with `X-`.",
     .example = "[X-Application]\n"
                "Intents=OpenURI/text:gui\n",
     .relatedIds = {"intent-invalid"},
     .message = &kIntentNameMissing},
    {.id = "intent-not-standard",
     .title = "Intent is not one of the standard ones",
     .demand = "An intent is `Start` or `OpenURI`, or its name begins with `X-`.",
     .why = "Names without `X-` are kept for intents that the platform defines.",
     .fix = "Correct the element of `Intents` in the sandbox section of the desktop file. Put `X-` "
            "in front of a name of your own, and call it so everywhere.",
     .example = "[X-Application]\n"
                "Intents=Start;X-ShowRoute\n",
     .relatedIds = {"intent-invalid"},
     .message = &kIntentNotStandard},
    {.id = "intent-flag-unknown",
     .title = "Flag of an intent is unknown",
     .demand = "The one flag of an intent is `gui`.",
     .why = "The platform acts on flags and knows no others.",
     .fix = "Remove the flag from the element of `Intents` in the sandbox section of the desktop "
            "file, or write `gui` in its place.",
     .example = "[X-Application]\n"
                "Intents=OpenURI:gui\n",
     .relatedIds = {"intent-invalid"},
     .message = &kIntentFlagUnknown},
    {.id = "task-key-not-allowed",
     .title = "Background task has a key that is not allowed",
     .demand = "The only keys of a group `X-Task` or `X-Service` are `Type`, `Exec`, "
               "`Permissions` and `Conditions`.",
     .why = "These keys describe in full what runs without a user. The platform knows no others.",
     .fix = "Remove the key from the group in the desktop file, or correct its name: upper and "
            "lower case count.",
     .example = "[X-Task sync]\n"
                "Type=periodic\n"
                "Exec=/usr/bin/org.example.pilot --sync\n"
                "Permissions=Internet\n"
                "Conditions=internet:wifi\n",
     .relatedIds = {"task-type-unsupported"},
     .message = &kTaskKeyDisallowed},
    {.id = "task-name-invalid",
     .title = "Background task does not have a valid name",
     .demand = "Behind `X-Task` or `X-Service` and a blank comes a name of at least two Latin "
               "letters and digits, the first of them a letter.",
     .why = "The platform calls the task by it, and its unit too.",
     .fix = "Correct the name of the group in the desktop file; hyphens, dots and underscores are "
            "not allowed in it.",
     .example = "[X-Task syncLog]\n",
     .relatedIds = {"desktop-group-not-allowed"},
     .message = &kTaskInvalid},
    {.id = "task-type-unsupported",
     .title = "Background task does not have a known type",
     .demand = "`Type` of a background task is `worker`, `periodic`, `scheduled` or "
               "`session-start`.",
     .why = "It says when the task is started.",
     .fix = "Set the key in the group of the task in the desktop file: upper and lower case count.",
     .example = "[X-Task sync]\n"
                "Type=periodic\n",
     .relatedIds = {"task-key-not-allowed"},
     .message = &kTaskTypeUnsupported},
    {.id = "task-executable-name-invalid",
     .title = "Program of a background task has a name that is not allowed",
     .demand = "Behind the package's name and a dot come at least two characters: a Latin letter, "
               "then Latin letters, digits, hyphens and underscores.",
     .why = "The name is taken apart at this place, so that it must be clear what belongs to it.",
     .fix = "Rename the program, in the .spec file and in `Exec` of the task in the desktop file.",
     .example = "[X-Task sync]\n"
                "Exec=/usr/bin/org.example.pilot.sync\n",
     .relatedIds = {"task-executable-wrong-path"},
     .message = &kExecutableNameInvalid},
    {.id = "task-executable-wrong-path",
     .title = "Background task does not start a program of the application",
     .demand = "`Exec` of a background task is `NAME`, `/usr/bin/NAME`, or either of them with a "
               "dot and a word behind it, where NAME is the name of the package. A blank and "
               "arguments may follow.",
     .why = "What runs without a user must be the application's own program.",
     .fix = "Set the key in the group of the task in the desktop file. The simplest way is to let "
            "the application's program do the task when it is given an argument.",
     .example = "[X-Task sync]\n"
                "Exec=/usr/bin/org.example.pilot --sync\n",
     .relatedIds = {"task-executable-name-invalid", "desktop-exec-invalid"},
     .message = &kExecutableWrong},
    {.id = "task-permission-not-allowed",
     .title = "Background task asks for a permission that no task may have",
     .demand = "`Permissions` of a background task holds none of `Base`, `Audio`, `Camera` and "
               "`Microphone`.",
     .why = "Nobody would notice who is listening or watching.",
     .fix = "Remove the permission from the group of the task in the desktop file. Do what "
            "needs it while the user has the application open.",
     .example = "[X-Task sync]\n"
                "Permissions=Internet\n",
     .relatedIds = {"task-permission-not-in-application"},
     .message = &kTaskPermissionNotAllowed},
    {.id = "task-permission-implicit",
     .title = "Background task asks for the permission that each task has",
     .demand = "`Permissions` of a background task does not hold `BaseTask`.",
     .why = "Each task has this permission by itself, and listed permissions are those beyond it.",
     .fix = "Remove it from the group of the task in the desktop file; remove the key if nothing "
            "else stands there.",
     .example = "[X-Task sync]\n"
                "Permissions=Internet\n",
     .message = &kTaskPermissionImplicit},
    {.id = "task-permission-not-in-application",
     .title = "Background task asks for a permission that the application lacks",
     .demand = "Each of a background task's `Permissions` stands in `Permissions` of the sandbox "
               "section as well.",
     .why = "The user grants permissions to the application, and a task must not have more.",
     .fix = "Add the permission to the sandbox section of the desktop file, or remove it from the "
            "task.",
     .example = "[X-Application]\n"
                "Permissions=Internet;Location\n"
                "\n"
                "[X-Task sync]\n"
                "Permissions=Internet\n",
     .relatedIds = {"permission-not-allowed", "sandbox-section-missing"},
     .message = &kTaskPermissionNotInApplication},
    {.id = "task-condition-invalid",
     .title = "Condition of a background task is not written in the right form",
     .demand = "A condition is a word, perhaps followed by a colon and another word. Words have at "
               "least two characters, small Latin letters, digits and hyphens, and begin with a "
               "letter.",
     .why = "The task would never run, or would run when it must not.",
     .fix = "Correct the element of `Conditions` in the group of the task in the desktop file. "
            "Elements are divided by semicolons; blanks are not allowed.",
     .example = "[X-Task sync]\n"
                "Conditions=internet:wifi-or-ethernet;charging\n",
     .relatedIds = {"task-condition-unknown"},
     .message = &kConditionInvalid},
    {.id = "task-condition-unknown",
     .title = "Condition of a background task is unknown",
     .demand = "A condition is `internet`, `battery-not-low`, `charging` or `idle`.",
     .why = "The task would never run, or would run when it must not.",
     .fix = "Correct or remove the element of `Conditions` in the group of the task in the desktop "
            "file.",
     .example = "[X-Task sync]\n"
                "Conditions=internet;battery-not-low\n",
     .relatedIds = {"task-condition-invalid", "task-condition-subtype-unknown"},
     .message = &kConditionUnknown},
    {.id = "task-condition-subtype-unknown",
     .title = "Condition of a background task has an unknown kind",
     .demand = "Behind `internet` and a colon comes `wifi`, `ethernet`, `cellular` or "
               "`wifi-or-ethernet`. The other conditions have no kinds.",
     .why = "The task would never run, or would run when it must not.",
     .fix = "Correct the element of `Conditions` in the group of the task in the desktop file, or "
            "leave out colon and kind: the bare condition is always right.",
     .example = "[X-Task sync]\n"
                "Conditions=internet:wifi;charging\n",
     .relatedIds = {"task-condition-unknown"},
     .message = &kSubtypeUnknown},
};

}  // namespace

Chapter taskChapter() {
    return {"Intents and background tasks", kEntries};
}

}  // namespace pkgvet::cli
