// SPDX-License-Identifier: MIT
// Draws a session as a timeline.
#include "print.h"

#include <algorithm>
#include <cinttypes>
#include <cmath>
#include <map>
#include <set>
#include <utility>

namespace report {
namespace {

constexpr int64_t band_ms = 10'000;
constexpr int left = 170, band_width = 1000, margin = 20; // of the picture, in pixels
constexpr int lane_height = 18, axis_height = 34, legend_height = 40;

// Beyond these nobody finds anything in it.
constexpr size_t most_lanes = 12, most_bands = 1000;

constexpr const char *quiet_colour = "#4878a8", *wait_colour = "#b0b0b0";

// The first that holds gives the colour of an update.
struct Mark {
    const char *name, *colour;
    bool (*holds)(const Update &update);
};
constexpr Mark marks[] = {
    {"flash", "#c8382c", [](const Update &u) { return u.flashes(); }},
    {"changed nothing", "#e08a1e", [](const Update &u) { return u.changed_pixels == 0; }},
    {"much larger than what changed", "#d8c020", is_oversized},
    {"greys through two levels", "#8858b0", is_coarse},
    {"other update", quiet_colour, [](const Update &) { return true; }},
};

const char *colour_of(const Update &update) {
    for (const Mark &mark : marks)
        if (mark.holds(update)) return mark.colour;
    return quiet_colour;
}

// The bands in which a stretch of time begins and ends.
std::pair<int64_t, int64_t> bands_of(int64_t from_ms, int64_t to_ms) {
    return {from_ms / band_ms, std::max(to_ms - 1, from_ms) / band_ms};
}

// The calls with the most time on the panel, by their names.
std::vector<std::string> chosen_calls(const std::vector<Update> &updates) {
    std::map<std::string, int64_t> panel_ms;
    for (const Update &u : updates) panel_ms[u.call] += u.panel_ms;
    std::vector<std::string> calls;
    calls.reserve(panel_ms.size());
    for (const auto &[call, ms] : panel_ms) calls.push_back(call);
    std::stable_sort(calls.begin(), calls.end(),
                     [&](const auto &a, const auto &b) { return panel_ms.at(a) > panel_ms.at(b); });
    if (calls.size() > most_lanes) calls.resize(most_lanes);
    std::sort(calls.begin(), calls.end());
    return calls;
}

// Where things stand in the picture.
class Layout {
  public:
    explicit Layout(const std::vector<Update> &updates) : calls_(chosen_calls(updates)) {
        for (const Update &u : updates) {
            largest_ = std::max(largest_, u.area.pixels());
            const size_t lane = lane_of(u.call);
            lanes_ = std::max(lanes_, lane + 1);
            if (u.wait_ms > 0) use(lane, bands_of(u.time_ms, u.start_ms()));
            use(lane, bands_of(u.start_ms(), u.start_ms() + u.panel_ms));
        }
        int64_t row = 0;
        for (auto &[number, band] : bands_) band.row = row++;
    }

    struct Band {
        int64_t row = 0;
        std::set<size_t> lanes = {}; // in which something stands
    };
    const std::map<int64_t, Band> &bands() const { return bands_; }
    std::string name_of(size_t lane) const {
        return lane < calls_.size() ? caller(calls_[lane]) : "other calls";
    }
    int64_t lanes_height() const { return static_cast<int64_t>(lanes_) * lane_height; }
    int64_t height() const { return legend_height + std::ssize(bands_) * band_height(); }
    int64_t top(int64_t band) const { return legend_height + bands_.at(band).row * band_height(); }
    // The middle of a lane.
    int64_t y(int64_t band, size_t lane) const {
        return top(band) + static_cast<int64_t>(lane) * lane_height + lane_height / 2;
    }
    size_t lane_of(const std::string &call) const {
        const auto place = std::lower_bound(calls_.begin(), calls_.end(), call);
        const bool is_chosen = place != calls_.end() && *place == call;
        return is_chosen ? static_cast<size_t>(place - calls_.begin()) : calls_.size();
    }
    // The side of a square of the area, beside that of the largest one.
    double bar_height(const Update &u) const {
        constexpr double least = 5, most = lane_height - 4;
        if (largest_ == 0) return least;
        const double share = static_cast<double>(u.area.pixels()) / static_cast<double>(largest_);
        return least + (most - least) * std::sqrt(share);
    }

  private:
    int64_t band_height() const { return lanes_height() + axis_height; }
    void use(size_t lane, const std::pair<int64_t, int64_t> &ends) {
        for (const int64_t band : {ends.first, ends.second}) bands_[band].lanes.insert(lane);
    }

    std::vector<std::string> calls_; // each has a lane; the others share the last one
    size_t lanes_ = 0;
    std::map<int64_t, Band> bands_;
    int64_t largest_ = 0;
};

double x_in_band(int64_t ms) {
    return left + static_cast<double>(ms) * band_width / band_ms;
}

void add_text(std::string &out, double x, int64_t y, const char *anchor, const std::string &text) {
    add(out, "<text x=\"%.1f\" y=\"%" PRId64 "\" text-anchor=\"%s\">", x, y, anchor);
    out.append(text).append("</text>\n");
}

void add_box(std::string &out, double x, double y, double width, double height,
             const char *colour) {
    add(out, "<rect x=\"%.1f\" y=\"%.1f\" width=\"%.1f\" height=\"%.1f\" fill=\"%s\"/>\n", x, y,
        width, height, colour);
}

// A stretch of time in a lane. It may reach into another band; what lies between two bands is not
// drawn.
void add_stretch(std::string &out, const Layout &layout, const Update &u, int64_t from_ms,
                 int64_t to_ms, double height, const char *colour) {
    const auto [first, last] = bands_of(from_ms, to_ms);
    for (const int64_t band : std::set{first, last}) {
        const int64_t begin = std::max(from_ms - band * band_ms, int64_t{0});
        const int64_t end = std::min(to_ms - band * band_ms, band_ms);
        // One that follows at once is another one.
        const double width = std::max(x_in_band(end) - x_in_band(begin) - 1, 1.0);
        const auto middle = static_cast<double>(layout.y(band, layout.lane_of(u.call)));
        add_box(out, x_in_band(begin), middle - height / 2, width, height, colour);
    }
}

void add_update(std::string &out, const Layout &layout, const Update &u) {
    const int64_t start_ms = u.start_ms();
    add(out,
        "<g><title>%" PRId64 " at %" PRId64 " ms: %s, mode %d, %" PRId64 ",%" PRId64 " %" PRId64
        "x%" PRId64 ", %" PRId64 " pixels changed, %" PRId64 " greys, %" PRId64
        " ms waited, %" PRId64 " ms on the panel</title>\n",
        u.seq, u.time_ms, caller(u.call).c_str(), u.mode, u.area.x, u.area.y, u.area.w, u.area.h,
        u.changed_pixels, u.greys, u.wait_ms, u.panel_ms);
    add_stretch(out, layout, u, start_ms, start_ms + u.panel_ms, layout.bar_height(u),
                colour_of(u));
    out += "</g>\n";
}

// Below the bars of other updates.
void add_wait(std::string &out, const Layout &layout, const Update &u) {
    constexpr double thin = 2;
    if (u.wait_ms > 0) add_stretch(out, layout, u, u.time_ms, u.start_ms(), thin, wait_colour);
}

void add_axis(std::string &out, const Layout &layout, int64_t band) {
    const int64_t top = layout.top(band), bottom = top + layout.lanes_height();
    for (const size_t lane : layout.bands().at(band).lanes)
        add_text(out, left - 8, layout.y(band, lane) + 4, "end", layout.name_of(lane));
    for (int64_t s = 0; s <= band_ms / 1000; ++s) {
        const double x = x_in_band(s * 1000);
        add(out,
            "<line x1=\"%.1f\" y1=\"%" PRId64 "\" x2=\"%.1f\" y2=\"%" PRId64
            "\" stroke=\"#d8d8d8\"/>\n",
            x, top, x, bottom);
        add_text(out, x, bottom + 14, "middle", std::to_string(band * band_ms / 1000 + s) + " s");
    }
}

void add_legend(std::string &out) {
    double x = left;
    const auto entry = [&](const char *name, const char *colour) {
        add_box(out, x, 12, 12, 12, colour);
        add_text(out, x + 17, 22, "start", name);
        x += 40 + 6.5 * static_cast<double>(std::string(name).size());
    };
    for (const Mark &mark : marks) entry(mark.name, mark.colour);
    entry("waits", wait_colour);
}

} // namespace

std::optional<std::string> as_svg(const std::vector<Update> &updates) {
    const Layout layout(updates);
    if (layout.bands().size() > most_bands) return std::nullopt;
    std::string out;
    add(out,
        "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"%d\" height=\"%" PRId64
        "\" font-family=\"sans-serif\" font-size=\"12\">\n"
        "<rect width=\"100%%\" height=\"100%%\" fill=\"white\"/>\n",
        left + band_width + margin, layout.height());
    add_legend(out);
    for (const auto &[number, band] : layout.bands()) add_axis(out, layout, number);
    for (const Update &update : updates) add_wait(out, layout, update);
    for (const Update &update : updates) add_update(out, layout, update);
    return out + "</svg>\n";
}

} // namespace report
