// SPDX-License-Identifier: MIT
// The calls SelectionList_*: a handle keeps its list alive through callbacks that destroy it.
#include <memory>

#include "kelvane/lists.h"
#include "lists/handle.h"
#include "lists/list.h"

struct iselectionlist_s {
    std::shared_ptr<lists::List> widget;
};

using lists::List;
using lists::with;

iselectionlist *SelectionList_Create(const ilistrows *rows) {
    return ground::guarded(nullptr, [&] {
        auto handle = std::make_unique<iselectionlist>();
        handle->widget = std::make_shared<List>(rows ? *rows : ilistrows{});
        return handle.release();
    });
}

void SelectionList_Destroy(iselectionlist *list) {
    if (list) list->widget->abandon();
    delete list;
}

void SelectionList_SetRect(iselectionlist *list, const irect *place) {
    with(list, [&](List &l) { l.set_place(place ? *place : irect{}); });
}

void SelectionList_SetCount(iselectionlist *list, int count) {
    with(list, [&](List &l) { l.set_count(count); });
}

int SelectionList_GetCount(const iselectionlist *list) {
    return list ? list->widget->paging().count : 0;
}

void SelectionList_Draw(iselectionlist *list) {
    with(list, [](List &l) { l.draw(); });
}

void SelectionList_DrawRow(iselectionlist *list, int row) {
    with(list, [&](List &l) { l.draw_row(row); });
}

int SelectionList_HandleEvent(iselectionlist *list, int type, int par1, int par2) {
    bool is_taken = false;
    with(list, [&](List &l) { is_taken = l.handle(type, par1, par2); });
    return is_taken ? 1 : 0;
}

void SelectionList_SetSelected(iselectionlist *list, int row) {
    with(list, [&](List &l) { l.select(row); });
}

int SelectionList_GetSelected(const iselectionlist *list) {
    return list ? list->widget->paging().selected : -1;
}

void SelectionList_SetPage(iselectionlist *list, int page) {
    with(list, [&](List &l) { l.show_page(page); });
}

int SelectionList_GetPage(const iselectionlist *list) {
    return list ? list->widget->paging().page : 0;
}

int SelectionList_GetPageCount(const iselectionlist *list) {
    return list ? list->widget->paging().last_page() + 1 : 0;
}

irect SelectionList_GetRowRect(const iselectionlist *list, int row) {
    return list ? list->widget->row_rect(row) : irect{};
}
