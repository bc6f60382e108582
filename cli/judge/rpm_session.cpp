// Sets librpm up and keeps it quiet.
#include "cli/judge/rpm_session.h"

#include <rpm/rpmlib.h>
#include <rpm/rpmlog.h>
#include <rpm/rpmmacro.h>
#include <rpm/rpmts.h>

#include <utility>

namespace pkgvet::cli {

namespace {

// Neither shown by librpm nor cause for it to end the process.
constexpr int kHandled = 0;

int keepMessage(rpmlogRec record, rpmlogCallbackData data) {
    *static_cast<std::string*>(data) = rpmlogRecMessage(record);
    return kHandled;
}

}  // namespace

RpmSession::RpmSession() {
    rpmlogSetCallback(keepMessage, &message_);
    rpmReadConfigFiles(nullptr, nullptr);
    transactions_ = rpmtsCreate();
    rpmtsSetVfyLevel(transactions_, 0);
}

RpmSession::~RpmSession() {
    rpmtsFree(transactions_);
    rpmFreeMacros(nullptr);
    rpmFreeRpmrc();
    rpmlogSetCallback(nullptr, nullptr);
}

std::string RpmSession::takeMessage() {
    std::string message = std::exchange(message_, std::string());
    while (message.ends_with('\n')) {
        message.pop_back();
    }
    return message;
}

}  // namespace pkgvet::cli
