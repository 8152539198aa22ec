// The whole program against a scripted node software: the ends that no node can bring about.  Each
// runs in a process of its own, which writes what its boxes say on standard error.
#include "gui_support.h"

#include "graphics.h"
#include "holders.h"
#include "messages.h"
#include "nofverbs.h"
#include "programend.h"
#include "scriptednof.h"
#include "startup.h"
#include "vgadgutl.h"
#include "vgadsbld.h"
#include "vgadsdel.h"
#include "vganodew.h"
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>

SCRIPTED_NOF_ENTRY

int quiladmin_main(int argc, char **argv);

namespace {

bool no_font_sets;
size_t failing_size;   /* bytes of the requests that find no memory; 0: none */
size_t failing_growth; /* and of those for more */

} // namespace

extern "C" {
NB_VOID *__real_calloc(size_t count, size_t size);
NB_VOID *__wrap_calloc(size_t count, size_t size);
NB_VOID *__real_realloc(NB_VOID *block, size_t size);
NB_VOID *__wrap_realloc(NB_VOID *block, size_t size);
XFontSet __real_XCreateFontSet(Display *, const char *, char ***, int *, char **);
XFontSet __wrap_XCreateFontSet(Display *, const char *, char ***, int *, char **);
}

XFontSet __wrap_XCreateFontSet(Display *display, const char *pattern, char ***missing, int *count,
                               char **default_string) {
    if (no_font_sets) {
        *missing = nullptr;
        *count = 0;
        return nullptr;
    }
    return __real_XCreateFontSet(display, pattern, missing, count, default_string);
}

NB_VOID *__wrap_calloc(size_t count, size_t size) {
    return failing_size != 0 && count * size == failing_size ? nullptr : __real_calloc(count, size);
}

NB_VOID *__wrap_realloc(NB_VOID *block, size_t size) {
    return failing_growth != 0 && size == failing_growth ? nullptr : __real_realloc(block, size);
}

namespace {

namespace fs = std::filesystem;

class Ends : public testing::Test {
protected:
    void SetUp() override {
        char name[] = "/tmp/qaXXXXXX";
        prefix = mkdtemp(name);
        fs::create_directories(prefix / "etc");
        fs::create_directories(prefix / "var/log");
        fs::create_directories(prefix / "lib/nls/msg");
        fs::create_symlink(fs::path(PROGRAM_BUILD_TREE) / "lib/X11", prefix / "lib/X11");
        fs::create_symlink(fs::path(PROGRAM_BUILD_TREE) / "lib/nls/msg/C",
                           prefix / "lib/nls/msg/C");
        setenv("SNA_PREFIX", prefix.c_str(), 1);
        setenv("HOME", prefix.c_str(), 1);
        setenv("LANG", "C", 1);
        scripted_nof.reset();
    }
    void TearDown() override { fs::remove_all(prefix); }

    void make_client_server() const {
        std::ofstream(prefix / "etc/domain") << "client_server = yes\n";
    }

    /* A catalogue with a text for each message but one. */
    void make_catalogue_without(int missing) const {
        fs::remove_all(prefix / "lib/nls/msg/C");
        fs::create_directory(prefix / "lib/nls/msg/C");
        std::ofstream source(prefix / "sna.msg");
        source << "$set 2\n";
        for (int number = 1; number <= VGA_MESSAGE_COUNT; number++) {
            if (number != missing) {
                source << number << " text " << number << "\n";
            }
        }
        source.close();
        const std::string command = "gencat '" + (prefix / "lib/nls/msg/C/sna.cat").string() +
                                    "' '" + (prefix / "sna.msg").string() + "'";
        ASSERT_EQ(std::system(command.c_str()), 0);
    }

    [[nodiscard]] std::string log() const {
        std::ifstream stream(prefix / "var/log/sna.err");
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    bool logged(const std::string &record) const { return log().find(record) != std::string::npos; }

    fs::path prefix;
};

/* In the process of the program. */

/* What the box says, and its details. */
std::string flat_text(const VGA_MODAL_DLG &box) {
    std::string flat = gui::label_text(box.dialog, XmNmessageString);
    flat += std::string(" details: ") + (box.details != nullptr ? box.details : "");
    std::replace(flat.begin(), flat.end(), '\n', ' ');
    return flat;
}

/* Reads the box of the main window once it is there, and presses its OK. */
NB_VOID read_boxes(XtPointer, XtIntervalId *) {
    constexpr unsigned long pause = 20; // milliseconds
    const VGA_MODAL_DLG &box = gvga_main_dialog->modal_dlg;
    if (box.showing != 0 && XtIsManaged(box.dialog)) {
        fprintf(stderr, "box: %s\n", flat_text(box).c_str());
        XmPushButtonCallbackStruct pressed = {XmCR_ACTIVATE, nullptr, 1};
        XtCallCallbacks(XtNameToWidget(box.dialog, "OK"), XmNactivateCallback, &pressed);
    }
    XtAppAddTimeOut(gvga_appcontext, pause, read_boxes, nullptr);
}

[[noreturn]] void run(std::vector<std::string> words = {}) {
    words.insert(words.begin(), "quiladmin");
    std::vector<char *> arguments;
    for (std::string &word : words) {
        arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);
    exit(quiladmin_main(static_cast<int>(words.size()), arguments.data()));
}

/* Runs until the first verb is issued, and asks for the end then. */
[[noreturn]] void end_with(NB_LONG code, NB_ULONG subcode) {
    scripted_nof.completes_at_once = [=](const ISSUED_VERB &) {
        XtAppAddTimeOut(gvga_appcontext, 0, read_boxes, nullptr);
        vga_request_exit(code, subcode, "somewhere", 4711);
        return NB_USHORT{0};
    };
    run();
}

/* A domain that has nothing in it. */
NB_USHORT answer_with_nothing(const ISSUED_VERB &verb) {
    if (verb.vcb->opcode == NAP_OPEN_FILE) {
        auto *open = reinterpret_cast<NAP_OPEN_FILE_VERB *>(verb.vcb);
        open->target_handle = 100U + open->file;
    } else if (verb.vcb->opcode == NAP_CONNECT_NODE) {
        reinterpret_cast<NAP_CONNECT_NODE_VERB *>(verb.vcb)->target_handle = 1;
    }
    return 1;
}

template <class Data> NB_USHORT list_one(const ISSUED_VERB &verb, Data entry) {
    auto *query = reinterpret_cast<NAP_QUERY_LIST *>(verb.vcb);
    entry.overlay_size = static_cast<NB_USHORT>((sizeof(entry) + 3) & ~3U);
    memcpy(vga_buf_ptr(verb.vcb), &entry, sizeof(entry));
    query->num_entries = query->total_num_entries = 1;
    return 1;
}

/* A domain of one node, which has one local LU. */
NB_USHORT answer_with_a_node(const ISSUED_VERB &verb) {
    if (verb.vcb->opcode == NAP_QUERY_NODE_ALL) {
        NAP_NODE_ALL_DATA node = {};
        memcpy(node.node_name, "lonely", 6);
        node.info.node_state = NAP_NODE_ACTIVE;
        return list_one(verb, node);
    }
    if (verb.vcb->opcode == NAP_QUERY_LOCAL_LU) {
        NAP_LOCAL_LU_DATA lu = {};
        memcpy(lu.lu_name, "MMMMMMMM", sizeof(lu.lu_name));
        memcpy(lu.def_data.lu_alias, lu.lu_name, sizeof(lu.lu_name));
        nba_local_to_ebcdic(lu.lu_name, sizeof(lu.lu_name));
        return list_one(verb, lu);
    }
    return answer_with_nothing(verb);
}

NB_VOID delete_the_node(XtPointer, XtIntervalId *) {
    auto *node =
        gvga_system->built ? static_cast<VGA_NODE *>(AVL_FIRST(gvga_system->nodes)) : nullptr;
    if (node != nullptr && gvga_main_dialog->modal_dlg.showing == 0) {
        vga_delete_vga_node(node);
    } else {
        XtAppAddTimeOut(gvga_appcontext, 20, delete_the_node, nullptr);
    }
}

TEST_F(Ends, AnInternalErrorIsReportedWithItsPlace) {
    EXPECT_EXIT(end_with(VGA_EXIT_INTERNAL, 0), testing::ExitedWithCode(0),
                "box: .*lack of memory.* details: .*somewhere.*4711");
    EXPECT_TRUE(logged("0x40020001 ")) << log();
}

TEST_F(Ends, ACodeThatIsNotKnownIsReportedWithAllItsValues) {
    EXPECT_EXIT(end_with(77, 0xABCD), testing::ExitedWithCode(0),
                "box: .*unexpected.* details: .*004D.*ABCD.*somewhere.*4711");
    EXPECT_TRUE(logged("0x40020000 ")) << log();
}

TEST_F(Ends, ADomainWithoutANodeIsReported) {
    make_client_server();
    const auto start = [] {
        scripted_nof.completes_at_once = [](const ISSUED_VERB &verb) {
            if (scripted_nof.issued == 1) {
                XtAppAddTimeOut(gvga_appcontext, 0, read_boxes, nullptr);
            }
            return answer_with_nothing(verb);
        };
        run();
    };
    EXPECT_EXIT(start(), testing::ExitedWithCode(0), "box: No node of the domain");
}

/* A node of the domain that is listed, connected and empty, and deleted once it was shown. */
TEST_F(Ends, TheLastNodeThatLeavesIsReported) {
    make_client_server();
    const auto start = [] {
        scripted_nof.completes_at_once = [](const ISSUED_VERB &verb) {
            if (scripted_nof.issued == 1) {
                XtAppAddTimeOut(gvga_appcontext, 0, read_boxes, nullptr);
                XtAppAddTimeOut(gvga_appcontext, 0, delete_the_node, nullptr);
            }
            return answer_with_a_node(verb);
        };
        run();
    };
    EXPECT_EXIT(start(), testing::ExitedWithCode(0), "box: No node of the domain");
}

/* A display without any font that a set could be made of. */
class NoFontSet : public Ends {
protected:
    void SetUp() override {
        Ends::SetUp();
        no_font_sets = true;
    }
    void TearDown() override {
        no_font_sets = false;
        Ends::TearDown();
    }
};

/* The line of the LU stands in the second list: its text, behind its icon. */
NB_VOID look_at_the_text(XtPointer, XtIntervalId *) {
    const auto *desc = reinterpret_cast<const VGA_NODEW_DESC *>(gvga_main_dialog);
    const Widget list = desc->panes[VGA_NODEW_MIDDLE_PANE].draw_area;
    Pixel foreground = 0;
    XtVaGetValues(list, XmNforeground, &foreground, nullptr);
    const int beginning = static_cast<int>(gvga_viewer_expand_icon_width + gvga_viewer_icon_width);
    const int height = static_cast<int>(gvga_viewer_item_height);
    if (gvga_system->built && XtIsRealized(list)) {
        const gui::IMAGE text(list, beginning + 4, 2, 100, height);
        if (text.count(foreground) > 100) {
            fprintf(stderr, "drawn in %s, %u wide\n",
                    gvga_viewer_fontset == nullptr ? "the font" : "a set", gvga_viewer_char_width);
            vga_request_exit(VGA_EXIT_NORMAL, 0, "", 0);
            return;
        }
    }
    XtAppAddTimeOut(gvga_appcontext, 20, look_at_the_text, nullptr);
}

TEST_F(NoFontSet, ListsAreDrawnWithTheFontOfTheDisplay) {
    const auto start = [] {
        scripted_nof.completes_at_once = [](const ISSUED_VERB &verb) {
            if (scripted_nof.issued == 1) {
                XtAppAddTimeOut(gvga_appcontext, 0, look_at_the_text, nullptr);
            }
            return answer_with_a_node(verb);
        };
        run({"-xrm", "Quiladmin*fontName: fixed"});
    };
    EXPECT_EXIT(start(), testing::ExitedWithCode(0),
                "fontName.*No fixed-width.*drawn in the font, [1-9]");
}

/* What the start itself needs: each ends it with the words of a failed start. */
TEST_F(Ends, WithoutMemoryForTheStartItSaysSo) {
    const struct {
        const char *what;
        size_t size;
    } rows[] = {
        {"handles", 256 * (sizeof(NB_VOID *) + 8)}, /* their first table */
        {"system record", sizeof(VGA_SYSTEM)},
        {"first window", sizeof(VGA_NODEW_DESC)},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.what);
        const auto start = [&row] {
            failing_size = row.size;
            run();
        };
        EXPECT_EXIT(start(), testing::ExitedWithCode(165), "could not be started");
    }
}

TEST_F(Ends, WithoutUsageTextsItSaysSo) {
    make_catalogue_without(609);
    EXPECT_EXIT(run({"-h"}), testing::ExitedWithCode(165), "Unable to start the SNA admin tool");
    EXPECT_TRUE(logged("0x40020005 detail 2")) << log();
    make_catalogue_without(599);
    const auto usage = [] {
        char program[] = "quiladmin", argument[] = "-x";
        char *arguments[] = {program, argument, nullptr};
        vga_print_usage(1, arguments);
        vga_error_exit();
        exit(gvga_exit_code);
    };
    EXPECT_EXIT(usage(), testing::ExitedWithCode(165), "Unable to start the SNA admin tool");
    EXPECT_TRUE(logged("0x40020005 detail 1")) << log();
}

TEST_F(Ends, WithoutAMessageOrRoomForItItSaysSo) {
    constexpr size_t blocks[] = {4096, 3 * 4096}; // in which the texts are kept
    for (const size_t size : blocks) {
        const auto start = [size] {
            failing_growth = size;
            run();
        };
        EXPECT_EXIT(start(), testing::ExitedWithCode(165), "Unable to start the SNA admin tool");
    }
    for (const int missing : {1, 700, VGA_MESSAGE_COUNT}) {
        make_catalogue_without(missing);
        EXPECT_EXIT(run(), testing::ExitedWithCode(165), "Unable to start the SNA admin tool");
    }
    const std::string all = log(), record = "0x40020005 detail 4";
    size_t records = 0;
    for (size_t at = 0; (at = all.find(record, at)) != std::string::npos; at += record.size()) {
        records++;
    }
    EXPECT_EQ(records, std::size(blocks) + 3) << all;
}

} // namespace
