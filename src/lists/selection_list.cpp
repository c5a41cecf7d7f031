// SPDX-License-Identifier: MIT
// The calls SelectionList_*: a handle keeps its list alive through callbacks that destroy it.
#include <memory>

#include "ground/guard.h"
#include "kelvane/lists.h"
#include "lists/list.h"

struct iselectionlist_s {
    std::shared_ptr<lists::List> list;
};

namespace {

// Nothing for a null handle.
template <class Work>
void with_list(const iselectionlist *handle, Work work) {
    if (!handle) return;
    const std::shared_ptr<lists::List> list = handle->list;
    ground::guarded([&] { work(*list); });
}

} // namespace

iselectionlist *SelectionList_Create(const ilistrows *rows) {
    return ground::guarded(nullptr, [&] {
        auto handle = std::make_unique<iselectionlist>();
        handle->list = std::make_shared<lists::List>(rows ? *rows : ilistrows{});
        return handle.release();
    });
}

void SelectionList_Destroy(iselectionlist *list) {
    delete list;
}

void SelectionList_SetRect(iselectionlist *list, const irect *place) {
    with_list(list, [&](lists::List &l) { l.set_place(place ? *place : irect{}); });
}

void SelectionList_SetCount(iselectionlist *list, int count) {
    with_list(list, [&](lists::List &l) { l.set_count(count); });
}

int SelectionList_GetCount(const iselectionlist *list) {
    return list ? list->list->paging().count : 0;
}

void SelectionList_Draw(iselectionlist *list) {
    with_list(list, [](lists::List &l) { l.draw(); });
}

int SelectionList_HandleEvent(iselectionlist *list, int type, int par1, int par2) {
    bool is_taken = false;
    with_list(list, [&](lists::List &l) { is_taken = l.handle(type, par1, par2); });
    return is_taken ? 1 : 0;
}

void SelectionList_SetSelected(iselectionlist *list, int row) {
    with_list(list, [&](lists::List &l) { l.select(row); });
}

int SelectionList_GetSelected(const iselectionlist *list) {
    return list ? list->list->paging().selected : -1;
}

void SelectionList_SetPage(iselectionlist *list, int page) {
    with_list(list, [&](lists::List &l) { l.show_page(page); });
}

int SelectionList_GetPage(const iselectionlist *list) {
    return list ? list->list->paging().page : 0;
}

int SelectionList_GetPageCount(const iselectionlist *list) {
    return list ? list->list->paging().last_page() + 1 : 0;
}

irect SelectionList_GetRowRect(const iselectionlist *list, int row) {
    return list ? list->list->row_rect(row) : irect{};
}
