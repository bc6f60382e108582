// Compiles and applies the filter.
#include "cli/worker/system_call_filter.h"

#include <fcntl.h>
#include <linux/seccomp.h>
#include <sched.h>
#include <seccomp.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <system_error>

#include "pkgvet/base/c_handle.h"
#include "pkgvet/base/descriptor.h"

namespace pkgvet::cli {

namespace {

using FilterHandle = CHandle<void, seccomp_release>;

constexpr std::array kRefusedCalls = {
    SCMP_SYS(mount),
    SCMP_SYS(umount2),
    SCMP_SYS(pivot_root),
    SCMP_SYS(move_mount),
    SCMP_SYS(open_tree),
    SCMP_SYS(fsopen),
    SCMP_SYS(fsconfig),
    SCMP_SYS(fsmount),
    SCMP_SYS(fspick),
    SCMP_SYS(mount_setattr),
    SCMP_SYS(unshare),
    SCMP_SYS(setns),
    // A socket that has a path can be reached from any namespace.
    SCMP_SYS(socket),
    SCMP_SYS(connect),
    SCMP_SYS(ptrace),
    SCMP_SYS(process_vm_readv),
    SCMP_SYS(process_vm_writev),
    SCMP_SYS(kcmp),
    SCMP_SYS(bpf),
    SCMP_SYS(perf_event_open),
    SCMP_SYS(userfaultfd),
    SCMP_SYS(io_uring_setup),
    SCMP_SYS(io_uring_enter),
    SCMP_SYS(io_uring_register),
    SCMP_SYS(add_key),
    SCMP_SYS(request_key),
    SCMP_SYS(keyctl),
    SCMP_SYS(name_to_handle_at),
    SCMP_SYS(open_by_handle_at),
    SCMP_SYS(init_module),
    SCMP_SYS(finit_module),
    SCMP_SYS(delete_module),
    SCMP_SYS(kexec_load),
    SCMP_SYS(kexec_file_load),
    SCMP_SYS(reboot),
    SCMP_SYS(swapon),
    SCMP_SYS(swapoff),
    SCMP_SYS(quotactl),
    SCMP_SYS(acct),
};

constexpr std::array kNewNamespaces = {CLONE_NEWUSER, CLONE_NEWNS,  CLONE_NEWPID,
                                       CLONE_NEWNET,  CLONE_NEWIPC, CLONE_NEWUTS};

[[noreturn]] void fail(int error) {
    throw std::system_error(error, std::generic_category(), "cannot filter system calls");
}

void check(int answer) {
    if (answer < 0) {
        fail(-answer);
    }
}

void refuse(void* filter) {
    for (const int call : kRefusedCalls) {
        check(seccomp_rule_add(filter, SCMP_ACT_ERRNO(EPERM), call, 0));
    }
    for (const int flag : kNewNamespaces) {
        const auto bit = static_cast<scmp_datum_t>(flag);
        const scmp_arg_cmp isSet = SCMP_A0(SCMP_CMP_MASKED_EQ, bit, bit);
        check(seccomp_rule_add_array(filter, SCMP_ACT_ERRNO(EPERM), SCMP_SYS(clone), 1, &isSet));
    }
    // Its flags lie in memory, where a filter cannot look. The C library then takes clone.
    check(seccomp_rule_add(filter, SCMP_ACT_ERRNO(ENOSYS), SCMP_SYS(clone3), 0));
}

}  // namespace

SystemCallFilter::SystemCallFilter() {
    const FilterHandle filter(seccomp_init(SCMP_ACT_ALLOW));
    if (!filter) {
        fail(ENOMEM);
    }
    refuse(filter.get());
    const Descriptor memory(memfd_create("filter", MFD_CLOEXEC));
    if (!memory.isOpen()) {
        fail(errno);
    }
    check(seccomp_export_bpf(filter.get(), memory.get()));
    struct stat status {};
    fstat(memory.get(), &status);
    program_.resize(static_cast<std::size_t>(status.st_size) / sizeof(sock_filter));
    if (pread(memory.get(), program_.data(), static_cast<std::size_t>(status.st_size), 0) !=
        status.st_size) {
        fail(EIO);
    }
}

void SystemCallFilter::apply() const {
    sock_fprog program{static_cast<unsigned short>(program_.size()),
                       const_cast<sock_filter*>(program_.data())};
    if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 ||
        prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program, 0, 0) != 0) {
        fail(errno);
    }
}

}  // namespace pkgvet::cli
