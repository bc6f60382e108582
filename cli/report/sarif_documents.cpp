// Divides a SARIF report into documents.
#include "cli/report/sarif_documents.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <memory>
#include <span>
#include <tuple>

#include "cli/catalogue/catalogue.h"
#include "cli/report/format_json.h"
#include "cli/report/format_sarif.h"
#include "cli/report/sarif_parts.h"

namespace pkgvet::cli {

namespace {

using Results = std::span<const SarifResult>;

constexpr int kGzipWindow = MAX_WBITS + 16;  // 16 asks zlib for gzip's form
constexpr int kMemoryLevel = 8;              // zlib's own default
constexpr std::size_t kPieceSize = std::size_t{1} << 16U;

// What gzip makes of text. Only the size is of interest, so the bytes go nowhere.
std::size_t packedSize(const std::string& text) {
    z_stream stream{};
    if (deflateInit2(&stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, kGzipWindow, kMemoryLevel,
                     Z_DEFAULT_STRATEGY) != Z_OK) {
        return text.size();
    }
    const std::unique_ptr<z_stream, decltype(&deflateEnd)> owner(&stream, &deflateEnd);
    std::array<Bytef, kPieceSize> piece{};
    std::string input = text;  // zlib takes no constant bytes
    stream.next_in = reinterpret_cast<Bytef*>(input.data());
    stream.avail_in = static_cast<uInt>(input.size());
    int status = Z_OK;
    while (status == Z_OK) {
        stream.next_out = piece.data();
        stream.avail_out = piece.size();
        status = deflate(&stream, Z_FINISH);
    }
    return stream.total_out;
}

// Grave ones first, then those that count, then by severity, and otherwise as they come.
void sortWorstFirst(std::vector<SarifResult>* results) {
    const auto rank = [](const SarifResult& result) {
        const Finding& finding = *result.merged.finding;
        return std::tuple(!isGrave(finding), finding.standing != Standing::Counts,
                          -static_cast<int>(finding.severity));
    };
    std::stable_sort(results->begin(), results->end(),
                     [&](const SarifResult& a, const SarifResult& b) { return rank(a) < rank(b); });
}

// Writes documents of one run.
class Writer {
public:
    Writer(const RunReport& run, const ReportStyle& style, const SarifLimits& limits)
        : run_(run), style_(style), limits_(limits) {}

    std::string text(Results results, std::size_t number) const {
        return jsonText(sarifDocument(run_, results, number, style_), kJsonIndent) + "\n";
    }

    // Text that is small enough as it stands need not be packed.
    std::size_t excess(const std::string& text) const {
        const std::size_t size = text.size() < limits_.packedBytes ? 0 : packedSize(text);
        return size > limits_.packedBytes ? size : 0;
    }

    // Writes as many of the first results as one document takes, and returns how many.
    std::size_t add(Results results, SarifDocuments* documents) const {
        std::size_t count = std::min(results.size(), limits_.results);
        const std::size_t number = documents->texts.size() + 1;
        std::string document = text(results.first(count), number);
        while (const std::size_t size = count > 1 ? excess(document) : 0) {
            count = smaller(count, size);
            document = text(results.first(count), number);
        }
        documents->areTooLarge = documents->areTooLarge || excess(document) > 0;
        documents->texts.push_back(std::move(document));
        documents->told += count;
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
    const ReportStyle& style_;
    SarifLimits limits_;
};

}  // namespace

SarifDocuments sarifDocuments(const RunReport& run, const ReportStyle& style, std::size_t most,
                              const SarifLimits& limits) {
    std::vector<SarifResult> results = sarifResults(run);
    const Writer writer(run, style, limits);
    SarifDocuments documents;
    documents.results = results.size();
    if (results.size() <= limits.results) {
        std::string whole = writer.text(results, 1);
        if (writer.excess(whole) == 0) {
            return {{std::move(whole)}, results.size(), results.size()};
        }
    }
    sortWorstFirst(&results);
    Results left(results);
    do {
        left = left.subspan(writer.add(left, &documents));
    } while (!left.empty() && documents.texts.size() < most);
    return documents;
}

}  // namespace pkgvet::cli
