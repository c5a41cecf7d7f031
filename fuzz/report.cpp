// SPDX-License-Identifier: MIT
// Any bytes as a trace: read, summed up, and printed in each form.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>

#include "report/print.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    const std::string text(reinterpret_cast<const char *>(data), size);
    const report::Trace trace = report::parse_trace(text);
    const report::Summary summary = report::summarise("trace", trace.updates);
    const std::optional<std::string> svg = report::as_svg(trace.updates);
    if (svg && !svg->ends_with("</svg>\n")) std::abort();
    if (report::as_table(summary).empty() || report::as_json({summary}).empty()) std::abort();
    return 0;
}
