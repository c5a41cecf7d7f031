// SPDX-License-Identifier: MIT
// A sheet of numbers that are changed by steps.
#pragma once

#include <vector>

#include "selectors/sheet.h"

namespace selectors {

struct Field {
    const char *label; // a key of the language
    int value, least, most;
    int digits; // with zeroes in front
};

class FieldSheet : public Sheet {
  protected:
    FieldSheet(const char *title, std::vector<Field> fields);
    int value(size_t field) const { return fields_[field].value; }
    // Brings a field into other limits.
    void limit(size_t field, int least, int most);
    // A field was changed: those that depend on it follow.
    virtual void changed() {}
    // What stands below the fields, and how high that is.
    virtual int sample_h() const { return 0; }
    virtual void draw_sample(const irect &) const {}

  private:
    int body_h() const final;
    void place_body(const irect &body) final;
    void draw_body() const final;
    bool key(int code, int repeats) final;
    void tap(int x, int y) final;
    void hold(int x, int y) final;
    void press(int x, int y, int steps);

    irect cell(size_t field) const;
    irect part(size_t field, int which) const;
    void draw_field(size_t field) const;
    void draw_sign(const irect &r, bool is_plus) const;
    void step(size_t field, int by);
    void select(size_t field);

    std::vector<Field> fields_;
    size_t selected_ = 0;
    irect body_{};
};

} // namespace selectors
