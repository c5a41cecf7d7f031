// SPDX-License-Identifier: MIT
// OpenList(): a list whose rows an application fills.
#include <memory>

#include "ground/guard.h"
#include "kelvane/lists.h"
#include "selectors/list_screen.h"

namespace selectors {
namespace {

class ApplicationList : public ListScreen {
  public:
    explicit ApplicationList(const ilist &asked)
        : ListScreen({asked.title, asked.place,
                      (asked.flags & LIST_TURNS) != 0 ? Turning::with_device : Turning::stays,
                      asked.rows}),
          rows_(asked.rows) {
        if (asked.selected != 0) list().select(asked.selected);
    }

    bool is_selector() const override { return false; }

  private:
    void fill(int row, ilistrow &out) override {
        if (rows_.fill) rows_.fill(row, &out, rows_.context);
    }
    bool draw_row(int row, const irect &area) override {
        return rows_.draw && rows_.draw(row, &area, rows_.context) != 0;
    }
    void told(int action, int row) override {
        if (rows_.hproc) rows_.hproc(action, row, rows_.context);
    }

    ilistrows rows_;
};

template <class Work>
void with_list(int number, Work work) {
    ground::guarded([&] {
        if (const auto list = std::dynamic_pointer_cast<ApplicationList>(find(number))) work(*list);
    });
}

} // namespace
} // namespace selectors

using selectors::ApplicationList;
using selectors::with_list;

int OpenList(const ilist *list) {
    return ground::guarded(
        0, [&] { return list ? selectors::open(std::make_shared<ApplicationList>(*list)) : 0; });
}

void CloseList(int list) {
    with_list(list, [](ApplicationList &l) { selectors::close_with_above(l.number()); });
}

void UpdateList(int list, int count) {
    with_list(list, [&](ApplicationList &l) {
        l.list().set_count(count);
        l.show_list();
    });
}

void SelectListRow(int list, int row) {
    with_list(list, [&](ApplicationList &l) { l.go_to(row); });
}

int GetListRow(int list) {
    int row = -1;
    with_list(list, [&](ApplicationList &l) { row = l.list().paging().selected; });
    return row;
}

void UpdateListRow(int list, int row) {
    with_list(list, [&](ApplicationList &l) { l.show_row(row); });
}

irect GetListRowRect(int list, int row) {
    irect place{};
    with_list(list, [&](ApplicationList &l) { place = l.list().row_rect(row); });
    return place;
}
