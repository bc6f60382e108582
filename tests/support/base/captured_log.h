// What goes to standard error while an object of these lives.
#pragma once

#include <sstream>
#include <streambuf>
#include <string>
#include <vector>

#include "pkgvet/base/descriptor.h"

// Captures std::cerr, and with it the lines of Logger.
class CapturedLog {
public:
    CapturedLog();
    CapturedLog(const CapturedLog&) = delete;
    CapturedLog(CapturedLog&&) = delete;
    CapturedLog& operator=(const CapturedLog&) = delete;
    CapturedLog& operator=(CapturedLog&&) = delete;
    ~CapturedLog();

    std::string text() const { return stream_.str(); }
    // The text cut at line feeds, each line without its own.
    std::vector<std::string> lines() const;
    void clear() { stream_.str(std::string()); }

private:
    std::ostringstream stream_;
    std::streambuf* former_;
};

// Captures the file descriptor, and with it what C libraries and child processes write.
class CapturedDescriptor {
public:
    CapturedDescriptor();
    CapturedDescriptor(const CapturedDescriptor&) = delete;
    CapturedDescriptor(CapturedDescriptor&&) = delete;
    CapturedDescriptor& operator=(const CapturedDescriptor&) = delete;
    CapturedDescriptor& operator=(CapturedDescriptor&&) = delete;
    ~CapturedDescriptor();

    std::string text() const;

private:
    pkgvet::Descriptor former_;
    pkgvet::Descriptor file_;
};

// The lines that Logger writes at each level, for comparison with what was captured.
std::string errorLine(const std::string& text);
std::string warningLine(const std::string& text);
std::string infoLine(const std::string& text);
std::string criticalLine(const std::string& text);
