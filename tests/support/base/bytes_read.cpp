#include "tests/support/base/bytes_read.h"

#include <fstream>
#include <stdexcept>
#include <string>

namespace {

std::uint64_t bytesRead() {
    std::ifstream stream("/proc/self/io");
    std::string name;
    std::uint64_t count = 0;
    if (!(stream >> name >> count) || name != "rchar:") {
        throw std::runtime_error("the kernel does not count what is read");
    }
    return count;
}

}  // namespace

std::uint64_t bytesReadBy(const std::function<void()>& action) {
    const std::uint64_t before = bytesRead();
    action();
    return bytesRead() - before;
}
