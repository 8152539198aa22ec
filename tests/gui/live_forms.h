/* Forms over the model of a sample domain, whose nodes answer in the test. */
#ifndef LIVE_FORMS_H
#define LIVE_FORMS_H

#include "livesupport.h" // before the toolkit's headers

#include "dialogids.h"
#include "form_support.h"
#include "formrecords.h"
#include "hints.h"
#include "looks.h"
#include "vganodew.h"
#include "windowtable.h"

#include <Xm/RowColumn.h>
#include <map>

namespace forms {

struct PLACE {
    NB_VOID *record, *owner;
};

class LIVE_FORMS : public testing::Test, protected LIVE_MODEL {
protected:
    static void SetUpTestSuite() { looks::open_windows(); }

    void SetUp() override {
        gvga_toplevel = XtVaAppCreateShell("quiladmin", VGA_CLASS, applicationShellWidgetClass,
                                           gvga_display, nullptr);
        open(sample);
        vga_init_dialogs();
        build();
        gvga_hooks.verb_purged = vga_form_verb_purged;
        gvga_supported[VGA_SUPPORTED_APPLY] = 1;
        ASSERT_EQ(vga_display_node_window(nullptr, 1), 1);
        gvga_main_dialog = gvga_first_dialog;
        gui::show(gvga_toplevel);
    }

    void TearDown() override {
        close();
        vga_free_dialogs();
        XtDestroyWidget(gvga_toplevel);
        gvga_first_dialog = nullptr;
        gui::settle();
    }

    /* The records of a form's type, and what they belong to. */
    static std::vector<PLACE> places_of(const VGA_FORM_TYPE *type) {
        std::vector<PLACE> found;
        vga_walk_model([type, &found](auto &record, const char *, auto *) {
            using RECORD = std::remove_reference_t<decltype(record)>;
            if constexpr (requires {
                              record.parent;
                              record.gui_data.dialog;
                              VGA_RECORD_TYPE<RECORD>::links(record);
                          }) {
                if (type == &vga_form_type<RECORD>) {
                    found.push_back({&record, record.parent});
                }
            }
        });
        return found;
    }

    const char *sample = "branch";
};

} // namespace forms

#endif
