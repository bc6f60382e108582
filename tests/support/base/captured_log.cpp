#include "tests/support/base/captured_log.h"

#include <stdio.h>
#include <sys/mman.h>
#include <unistd.h>

#include <array>
#include <iostream>
#include <stdexcept>

CapturedLog::CapturedLog() : former_(std::cerr.rdbuf(stream_.rdbuf())) {}

CapturedLog::~CapturedLog() {
    std::cerr.rdbuf(former_);
}

std::vector<std::string> CapturedLog::lines() const {
    std::vector<std::string> lines;
    std::istringstream stream(text());
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

CapturedDescriptor::CapturedDescriptor()
    : former_(dup(STDERR_FILENO)), file_(memfd_create("captured", 0)) {
    if (!former_.isOpen() || !file_.isOpen() || dup2(file_.get(), STDERR_FILENO) < 0) {
        throw std::runtime_error("cannot capture standard error");
    }
}

CapturedDescriptor::~CapturedDescriptor() {
    dup2(former_.get(), STDERR_FILENO);
}

std::string CapturedDescriptor::text() const {
    fflush(stderr);
    std::string text;
    std::array<char, 4096> buffer{};
    off_t offset = 0;
    for (ssize_t count = 0;
         (count = pread(file_.get(), buffer.data(), buffer.size(), offset)) > 0;) {
        text.append(buffer.data(), static_cast<std::size_t>(count));
        offset += count;
    }
    return text;
}

std::string errorLine(const std::string& text) {
    return "(ERROR)\t\t" + text;
}

std::string warningLine(const std::string& text) {
    return "(WARNING)\t" + text;
}

std::string infoLine(const std::string& text) {
    return "(INFO)\t\t" + text;
}

std::string criticalLine(const std::string& text) {
    return "(CRITICAL)\t" + text;
}
