// SPDX-License-Identifier: MIT
// OpenTimeSelector() and OpenDateSelector().
#include "selectors/moment.h"

#include <algorithm>
#include <chrono>
#include <ctime>
#include <memory>

#include "ground/guard.h"
#include "selectors/fields.h"

namespace selectors {
namespace {

constexpr int first_year = 1970, last_year = 2199;

imoment now() {
    const std::time_t seconds = std::time(nullptr);
    std::tm local{};
    localtime_r(&seconds, &local);
    return {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min};
}

int days_of(int year, int month) {
    using namespace std::chrono;
    const year_month_day_last last{std::chrono::year(year) /
                                   std::chrono::month(static_cast<unsigned>(month)) /
                                   std::chrono::last};
    return static_cast<int>(static_cast<unsigned>(last.day()));
}

class MomentSheet : public FieldSheet {
  protected:
    MomentSheet(const char *title, const std::vector<Field> &fields, const imoment &start,
                kv_momenthandler hproc, void *context)
        : FieldSheet(title, fields), moment_(start), hproc_(hproc), context_(context) {}
    // The moment that was given, with what the fields say.
    virtual void read_fields(imoment &moment) const = 0;

  private:
    void answer(bool is_accepted) final {
        read_fields(moment_);
        if (hproc_) hproc_(is_accepted ? &moment_ : nullptr, context_);
    }

    imoment moment_;
    kv_momenthandler hproc_;
    void *context_;
};

class TimeSheet : public MomentSheet {
  public:
    TimeSheet(const char *title, const imoment &start, kv_momenthandler hproc, void *context)
        : MomentSheet(title ? title : "@Time",
                      {{"@Hour", start.hour, 0, 23, 2}, {"@Minute", start.minute, 0, 59, 2}}, start,
                      hproc, context) {}

  private:
    void read_fields(imoment &moment) const override {
        moment.hour = value(0);
        moment.minute = value(1);
    }
};

class DateSheet : public MomentSheet {
  public:
    DateSheet(const char *title, const imoment &start, kv_momenthandler hproc, void *context)
        : MomentSheet(title ? title : "@Date",
                      {{"@Day", start.day, 1, 31, 2},
                       {"@Month", start.month, 1, 12, 2},
                       {"@Year", start.year, first_year, last_year, 4}},
                      start, hproc, context) {
        fit_day();
    }

  private:
    void changed() override { fit_day(); }
    void fit_day() { limit(0, 1, days_of(value(2), value(1))); }
    void read_fields(imoment &moment) const override {
        moment.day = value(0);
        moment.month = value(1);
        moment.year = value(2);
    }
};

template <class Kind>
int open_moment(const char *title, const imoment &start, kv_momenthandler hproc, void *context) {
    return ground::guarded(
        0, [&] { return open(std::make_shared<Kind>(title, start, hproc, context)); });
}

} // namespace

int open_time(const char *title, const imoment &start, kv_momenthandler hproc, void *context) {
    return open_moment<TimeSheet>(title, start, hproc, context);
}

int open_date(const char *title, const imoment &start, kv_momenthandler hproc, void *context) {
    return open_moment<DateSheet>(title, start, hproc, context);
}

} // namespace selectors

int OpenTimeSelector(const imoment *start, kv_momenthandler hproc, void *context) {
    return selectors::open_time(nullptr, start ? *start : selectors::now(), hproc, context);
}

int OpenDateSelector(const imoment *start, kv_momenthandler hproc, void *context) {
    return selectors::open_date(nullptr, start ? *start : selectors::now(), hproc, context);
}
