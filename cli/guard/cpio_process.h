// The real cpio behind the guard.
#pragma once

#include <sys/types.h>

#include <string_view>

#include "pkgvet/base/descriptor.h"

namespace pkgvet::cli {

// A running cpio, which reads what is passed on to it.
class CpioProcess {
public:
    // Starts the cpio of the system, which is looked for in fixed places, with the arguments of
    // this program and one on the size of its reads. Throws std::system_error when that is not
    // possible.
    explicit CpioProcess(char* const* arguments);
    CpioProcess(const CpioProcess&) = delete;
    CpioProcess(CpioProcess&&) = delete;
    CpioProcess& operator=(const CpioProcess&) = delete;
    CpioProcess& operator=(CpioProcess&&) = delete;
    ~CpioProcess();

    // Where to write what cpio is to read.
    int input() const { return input_.get(); }
    // False when cpio takes no more.
    bool pass(std::string_view bytes) const;

    // Ends its input and waits for its end. The exit status as a shell would give it; called once.
    int finish();

private:
    Descriptor input_;
    pid_t process_ = -1;
};

}  // namespace pkgvet::cli
