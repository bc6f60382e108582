// Divides a SARIF report into documents.
#include "cli/report/sarif_documents.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <memory>
#include <span>
#include <string>

#include "cli/report/sarif_parts.h"

namespace pkgvet::cli {

namespace {

using Results = std::span<const SarifResult>;

constexpr int kGzipWindow = MAX_WBITS + 16;  // 16 asks zlib for gzip's form
constexpr int kMemoryLevel = 8;              // zlib's own default
constexpr std::size_t kPieceSize = std::size_t{1} << 16U;

// Tells the size of what gzip makes of text. Only that is of interest, so the bytes go nowhere.
class Packer {
public:
    Packer()
        : isReady_(deflateInit2(&stream_, Z_DEFAULT_COMPRESSION, Z_DEFLATED, kGzipWindow,
                                kMemoryLevel, Z_DEFAULT_STRATEGY) == Z_OK) {}
    Packer(const Packer&) = delete;
    Packer(Packer&&) = delete;
    Packer& operator=(const Packer&) = delete;
    Packer& operator=(Packer&&) = delete;
    ~Packer() { deflateEnd(&stream_); }

    bool isReady() const { return isReady_; }

    void add(std::string_view piece) { pack(std::string(piece), Z_NO_FLUSH); }

    std::size_t finish() {
        pack({}, Z_FINISH);
        return stream_.total_out;
    }

private:
    // zlib takes no constant bytes.
    void pack(std::string input, int flush) {
        stream_.next_in = reinterpret_cast<Bytef*>(input.data());
        stream_.avail_in = static_cast<uInt>(input.size());
        do {
            stream_.next_out = output_.data();
            stream_.avail_out = static_cast<uInt>(output_.size());
        } while (deflate(&stream_, flush) == Z_OK && stream_.avail_out == 0);
    }

    z_stream stream_{};
    std::array<Bytef, kPieceSize> output_{};
    bool isReady_;
};

std::size_t packedSize(const Spool& text) {
    const auto packer = std::make_unique<Packer>();
    if (!packer->isReady()) {
        return text.size();
    }
    text.read([&packer](std::string_view piece) { packer->add(piece); });
    return packer->finish();
}

// Writes documents of one run.
class Writer {
public:
    Writer(const RunReport& run, const SarifParts& parts, const SarifLimits& limits)
        : run_(run), parts_(parts), limits_(limits) {}

    Spool document(Results results, std::size_t number) const {
        return sarifDocument(run_, parts_, results, number);
    }

    // Text that is small enough as it stands need not be packed.
    std::size_t excess(const Spool& text) const {
        const std::size_t size = text.size() < limits_.packedBytes ? 0 : packedSize(text);
        return size > limits_.packedBytes ? size : 0;
    }

    // Hands on as many of the first results as one document takes, and returns how many.
    std::size_t write(Results results, const DocumentReceiver& receive,
                      SarifDocuments* documents) const {
        std::size_t count = std::min(results.size(), limits_.results);
        const std::size_t number = ++documents->documents;
        Spool text = document(results.first(count), number);
        std::size_t size = excess(text);
        while (size > 0 && count > 1) {
            count = smaller(count, size);
            text = document(results.first(count), number);
            size = excess(text);
        }
        documents->areTooLarge = documents->areTooLarge || size > 0;
        documents->told += count;
        receive(text);
        return count;
    }

private:
    // Results differ in size, so a little less than their share is tried.
    std::size_t smaller(std::size_t count, std::size_t size) const {
        const double share =
            static_cast<double>(limits_.packedBytes) / static_cast<double>(size) * 0.95;
        return std::max<std::size_t>(1,
                                     static_cast<std::size_t>(static_cast<double>(count) * share));
    }

    const RunReport& run_;
    const SarifParts& parts_;
    SarifLimits limits_;
};

}  // namespace

SarifDocuments writeSarifDocuments(const RunReport& run, const ReportStyle& style, std::size_t most,
                                   const DocumentReceiver& receive, const SarifLimits& limits) {
    SarifParts parts(run, style);
    const Writer writer(run, parts, limits);
    SarifDocuments documents;
    documents.results = parts.results.size();
    if (parts.results.size() <= limits.results) {
        const Spool whole = writer.document(parts.results, 1);
        if (writer.excess(whole) == 0) {
            receive(whole);
            return {1, parts.results.size(), parts.results.size()};
        }
    }
    // Otherwise the results stay as they come.
    std::stable_sort(parts.results.begin(), parts.results.end(),
                     [](const SarifResult& a, const SarifResult& b) { return a.rank < b.rank; });
    Results left(parts.results);
    do {
        left = left.subspan(writer.write(left, receive, &documents));
    } while (!left.empty() && documents.documents < most);
    return documents;
}

}  // namespace pkgvet::cli
