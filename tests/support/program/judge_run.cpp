#include "tests/support/program/judge_run.h"

#include <fcntl.h>
#include <poll.h>

#include "cli/worker/judge_process.h"
#include "pkgvet/base/descriptor.h"

using namespace pkgvet::cli;

namespace {

const std::vector<std::string> kProfiles = {"regular"};

PackageReport heard(TemplateProcess* from, std::size_t mostSaid) {
    const pkgvet::Descriptor package(open("/dev/null", O_RDONLY | O_CLOEXEC));
    JudgeProcess judge(from, package.get(), -1, mostSaid);
    while (!judge.isSilent()) {
        struct pollfd descriptors[] = {{judge.answerDescriptor(), POLLIN, 0},
                                       {judge.errorDescriptor(), POLLIN, 0}};
        poll(descriptors, 2, -1);
        judge.read();
    }
    const std::vector<std::string> directories = judge.directories();
    return concludeJudge(judge.end(), Stop::None, directories, kProfiles);
}

}  // namespace

PackageReport runJudge(const JudgeFunction& judge, SandboxMode sandbox, const Limits& limits) {
    TemplateOptions options;
    options.sandbox = sandbox;
    options.limits = limits;
    options.prepare = [&judge] { return judge; };
    return runJudge(options);
}

PackageReport runJudge(const TemplateOptions& options) {
    adoptOrphans();
    TemplateProcess from(options);
    return heard(&from, options.limits.report);
}

std::string observed(const std::function<std::string()>& look, SandboxMode sandbox) {
    return runJudge([&look](const Surroundings&) { return acceptedReport(look()); }, sandbox).name;
}

PackageReport acceptedReport(const std::string& name) {
    PackageReport report;
    report.name = name;
    report.judgements.resize(1);
    report.judgements[0].metaAccepted = true;
    report.judgements[0].contentAccepted = true;
    return report;
}

const Sandbox& availableSandbox() {
    static const Sandbox sandbox = [] {
        TemplateOptions options;
        options.prepare = [] { return JudgeFunction(); };
        TemplateProcess from(options);
        from.waitUntilPrepared();
        return from.sandbox();
    }();
    return sandbox;
}
