// SPDX-License-Identifier: MIT
// Makes the menu of the device window from the table of commands.
#include "hw_linux/window_menu.h"

#include <cstddef>
#include <map>
#include <string>

#include "hw_linux/device.h"
#include "hw_linux/menu.h"

namespace {

// A radio group activates the item that loses its mark as well; only the marked one counts.
void on_activate(GtkMenuItem *item, gpointer command) {
    if (GTK_IS_CHECK_MENU_ITEM(item) && !gtk_check_menu_item_get_active(GTK_CHECK_MENU_ITEM(item)))
        return;
    hw::run_command(GPOINTER_TO_INT(command));
}

class MenuBuilder {
  public:
    GtkWidget *build() {
        GtkWidget *root = gtk_menu_new();
        g_object_ref_sink(root);
        submenus_[""].menu = root;
        for (const hw::MenuItem &item : hw::menu_items()) add(item);
        gtk_widget_show_all(root);
        return root;
    }

  private:
    struct Submenu {
        GtkWidget *menu = nullptr;
        GSList *radio_group = nullptr;
    };

    void add(const hw::MenuItem &item) {
        const std::string path = item.path;
        const size_t slash = path.rfind('/');
        Submenu &parent = find_submenu(path.substr(0, slash));
        const char *label = item.path + slash + 1;
        GtkWidget *widget = item.has_mark() ? make_radio(parent, label, item.is_marked())
                                            : gtk_menu_item_new_with_label(label);
        g_signal_connect(widget, "activate", G_CALLBACK(on_activate),
                         GINT_TO_POINTER(item.command));
        gtk_menu_shell_append(GTK_MENU_SHELL(parent.menu), widget);
    }

    static GtkWidget *make_radio(Submenu &parent, const char *label, bool marked) {
        GtkWidget *widget = gtk_radio_menu_item_new_with_label(parent.radio_group, label);
        parent.radio_group = gtk_radio_menu_item_get_group(GTK_RADIO_MENU_ITEM(widget));
        if (marked) gtk_check_menu_item_set_active(GTK_CHECK_MENU_ITEM(widget), TRUE);
        return widget;
    }

    // The submenu at a path, made with its parents when it is not there yet.
    Submenu &find_submenu(const std::string &path) {
        Submenu &submenu = submenus_[path];
        if (submenu.menu) return submenu;
        const size_t slash = path.rfind('/');
        GtkWidget *item = gtk_menu_item_new_with_label(path.c_str() + slash + 1);
        submenu.menu = gtk_menu_new();
        gtk_menu_item_set_submenu(GTK_MENU_ITEM(item), submenu.menu);
        gtk_menu_shell_append(GTK_MENU_SHELL(find_submenu(path.substr(0, slash)).menu), item);
        return submenu;
    }

    std::map<std::string, Submenu> submenus_;
};

} // namespace

namespace hw {

GtkWidget *make_window_menu() {
    return MenuBuilder().build();
}

} // namespace hw
