/* Forms over the model of a sample domain, whose nodes answer in the test. */
#ifndef LIVE_FORMS_H
#define LIVE_FORMS_H

#include "livesupport.h" // before the toolkit's headers

#include "dialogids.h"
#include "form_support.h"
#include "formrecords.h"
#include "hints.h"
#include "looks.h"
#include "nodestate.h"
#include "vgaindct.h"
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

    /* Half a minute of what the nodes say by themselves; `node` is the only one that does. */
    NB_VOID follow(const VGA_NODE *node) {
        for (int round = 0; round < 20; round++) {
            run(1);
            domain->pass(500);
            domain->take_indications([node](const std::string &, NAP_RESOURCE_INDICATION one) {
                VGA_PROCESS_STATE work = {node->target, reinterpret_cast<NAP_VCB *>(&one),
                                          node->handle};
                vga_dispatch_indication(&work);
            });
        }
    }

    /* The records of a form's type, and what they belong to. */
    static std::vector<PLACE> places_of(const VGA_FORM_TYPE *type) {
        std::vector<PLACE> found;
        if (type == &vga_settings_type<VGA_SYSTEM>) {
            found.push_back({gvga_system, gvga_system});
        }
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
                if constexpr (std::is_same_v<RECORD, VGA_NODE>) {
                    if (type == &vga_settings_type<RECORD>) {
                        found.push_back({&record, &record});
                    }
                }
            }
        });
        return found;
    }

    /* Stops the node in the model and in the node software. */
    NB_VOID stop(VGA_NODE *node) {
        NAP_NAME_VERB verb = {};
        verb.opcode = NAP_STOP_NODE;
        verb.stop_type = NAP_IMMEDIATE_STOP;
        const auto *bytes = reinterpret_cast<const NB_UCHAR *>(&verb);
        std::vector<NB_UCHAR> block(bytes, bytes + nap_find_verb(verb.opcode)->block_size);
        domain->execute(node->target, block);
        domain->pass(60000);
        domain->take_indications([](const std::string &, const NAP_RESOURCE_INDICATION &) {});
        vga_process_stop_node(node, NAP_NODE_STOPPED);
    }

    const char *sample = "branch";
};

} // namespace forms

#endif
