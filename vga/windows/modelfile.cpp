#include "modelfile.h"
#include "globals.h"
#include "modelcheck.h"
#include "modeldump.h"
#include "modelwalk.h"
#include "nbproblem.h"
#include "vgaviewr.h"
#include <cctype>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace {

/* The line's text, with a stroke for each of its columns. */
NB_VOID add_text(std::string &text, const VGA_VIEWER_ITEM &item) {
    NB_CHAR buffer[VGA_VIEWER_TEXT_BUFFER + 1] = "";
    const VGA_VIEWER_DESC *type = vga_viewer_type(item.type);
    const NB_CHAR *at = buffer;
    if (type->create_text != nullptr) {
        buffer[type->create_text(item.data, buffer)] = '\0';
    }
    VGA_VIEWER_RUN run;
    for (NB_ULONG column = 0; vga_viewer_next_run(&at, &column, &run) != 0;) {
        text += run.column > 0 ? " | " : " ";
        text.append(run.text, static_cast<size_t>(run.whole));
    }
}

/* Marks before a line: '>' selected; '+' open or '-' closed, when there are lines below it. */
NB_VOID add_lines(std::string &text, const VGA_VIEWER_LIST &list, size_t depth) {
    for (const VGA_VIEWER_ITEM *item = list.first; item != nullptr;
         item = vga_viewer_next_in_list(item)) {
        if (item->hidden) {
            continue;
        }
        text += item->selected ? '>' : ' ';
        text.append(2 * depth, ' ');
        text += item->children.count == 0 ? ' ' : item->expanded ? '+' : '-';
        add_text(text, *item);
        text += '\n';
        add_lines(text, item->children, depth + 1);
    }
}

std::string describe(NB_VOID) {
    std::string text = vga_dump_model();
    vga_for_each_root([&text](VGA_VIEWER_ROOT &root) {
        text += "list\n";
        add_lines(text, root.top_items, 0);
    });
    const VGA_MODEL_FINDINGS findings = vga_check_model();
    text += std::to_string(findings.records) + " records\n";
    for (const std::string &wrong : findings.wrong) {
        text += "wrong: " + wrong + '\n';
    }
    return text;
}

} // namespace

NB_VOID vga_write_model_file(NB_VOID) {
    if (gvga_model_file[0] == '\0' || gvga_system == nullptr) {
        return;
    }
    /* A pipe without a reader must not hold the program. */
    const NB_INT flags = O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOCTTY | O_NONBLOCK;
    const std::string text = describe();
    const NB_INT file = open(gvga_model_file, flags, 0644);
    if (file < 0 || write(file, text.data(), text.size()) != static_cast<ssize_t>(text.size())) {
        nba_pd_print_exception(NB_PD_MODEL_FILE, 0, "s s", gvga_model_file, strerror(errno));
    }
    if (file >= 0) {
        close(file);
    }
}
