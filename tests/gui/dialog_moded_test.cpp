// The mode dialog as an operator meets it, against the node software itself, which runs inside the
// test: one table of cases, a heading for each step from OK to the node's answer.
#include "livesupport.h"

#include "nodew_fixture.h"

#include "completions.h"
#include "defineblock.h"
#include "form_support.h"
#include "forms.h"
#include "vgamoded.h"
#include "widgets.h"

#include <sstream>

SCRIPTED_NOF_ENTRY

/* What the program allocates comes from here; a verb that is not to be queued gets nothing. */
static bool no_memory;

extern "C" {
void *__real_calloc(size_t count, size_t size);
void *__wrap_calloc(size_t count, size_t size) {
    return no_memory ? nullptr : __real_calloc(count, size);
}
}

namespace {

// A line a case: the step, what is tried, the mode that is changed (of none, a new one of the class
// of service #INTER), what is entered, the message with its bounds, the verbs that go out when
// questions are answered with OK, and the numbers in the define verb, by their offset, that are not
// those that the dialog showed first; then what the program knows of the node.  Without verbs the
// message is a refusal, and the keyboard is where was entered last.
//
// A new mode begins with limits of 8, 8, 4 and 0, a window of 7 without a maximum and no sizes;
// SPARE has 32, 16, 8, 8, and 2 sessions that begin by themselves.
const char cases[] = R"(
 1; taken;            ;         Name=PAYMODE;                  616
 1; small letters;    ;         Name=paymode;                  616
 1; blank;            ;         Name=;                         641
 1; of another;       SPARE;    Name=NIGHTLY;                  616
 1; its own;          SPARE;    Desc=x;                        ; define
 2; network node;     ;         COSName=;                      638
 2; branch;           ;         COSName=;                      638; ; ; type=10
 2; end node, maps;   ;         COSName=;                      638; ; ; type=3 maps=1
 2; unknown;          ;         COSName=NOCOS;                 620
 2; unknown, maps;    SPARE;    COSName=NOCOS;                 620; ; ; type=3 maps=1
 2; end node;         ;         COSName= AutoAct=9;            617 0 4; ; ; type=3
 2; LEN node;         ;         COSName= AutoAct=9;            617 0 4; ; ; type=1 maps=1
 2; any, end node;    ;         COSName=NOCOS AutoAct=9;       617 0 4; ; ; type=3
 3; empty;            ;         SesLimMax=;                    640
 3; high;             ;         SesLimMax=32768;               622 0 32767
 4; empty;            ;         SesLimInit=;                   639
 4; high;             ;         SesLimInit=9;                  621 0 8
 5; empty;            ;         ConnWinnerLimit=;              637
 5; high;             ;         SesLimInit=6 ConnWinnerLimit=7; 619 0 6
 6; empty;            ;         ConnLoserLimit=;               636
 6; high;             ;         ConnLoserLimit=5;              618 0 4
 7; on;               ;         CryptButton=yes CompressionButton=yes MaxInCompMenu=3 MaxOutCompMenu=1; ; define; 88=1 89=1 98=1 99=4
 7; LZ9;              NIGHTLY;  MaxInCompMenu=2;               ; define; 99=2
 7; off;              NIGHTLY;  CompressionButton=no;          ; define; 89=0 98=0 99=0
 8; empty;            ;         AutoAct=;                      635
 8; high;             ;         AutoAct=5;                     617 0 4
 9; no upper bound;   ;         DefaultRUButton=yes RUUp=;     644
 9; upper bound low;  ;         DefaultRUButton=yes RUUp=255;  625 256 61440
 9; upper bound high; ;         DefaultRUButton=yes RUUp=61441; 625 256 61440
 9; no lower bound;   ;         DefaultRUButton=yes RULow=;    643
 9; none before, too; SPARE;    DefaultRUButton=yes RULow=;    643
 9; lower bound 0;    ;         DefaultRUButton=yes RULow=0;   643
 9; lower bound low;  ;         DefaultRUButton=yes RULow=255; 624 256 61440
 9; bounds crossed;   ;         DefaultRUButton=yes RUUp=300 RULow=301; 624 256 61440
 9; given;            ;         DefaultRUButton=yes RUUp=61440 RULow=257; ; define; 70=61440 73=0 94=257
 9; not looked at;    NIGHTLY;  RUUp=1 DefaultRUButton=no;     ; define; 73=1
10; empty;            NIGHTLY;  RcvPacWindowMax=;              ; define; 96=0
10; 0;                ;         RcvPacWindowMax=0;             623 1 32767
10; high;             ;         RcvPacWindowMax=32768;         623 1 32767
11; empty;            ;         RcvPacWindowInit=;             642
11; without maximum;  ;         RcvPacWindowInit=64;           614 1 63
11; of 64;            ;         RcvPacWindowMax=64 RcvPacWindowInit=64; 614 1 63
11; of 63;            ;         RcvPacWindowMax=63 RcvPacWindowInit=64; 646 1 63
11; of 5;             ;         RcvPacWindowMax=5 RcvPacWindowInit=0; 646 1 5
12; empty;            ;         TimeoutButton=yes Timeout=;    645
12; high;             ;         TimeoutButton=yes Timeout=65536; 626 0 65535
12; behind the mode;  ;         TimeoutButton=yes Timeout=65535; ; define timeout
13; full;             ;         Desc=1234567890123456789012345678901; ; define
14; name;             SNASVCMG; Name=OTHER;                    632
14; 1 and 1;          SNASVCMG; ConnLoserLimit=0 SesLimInit=1; 631
14; 2 and 0;          SNASVCMG; ConnWinnerLimit=0 AutoAct=0 SesLimInit=2; 631
14; 1 and 0;          SNASVCMG; SesLimInit=1 ConnWinnerLimit=0 AutoAct=0; ; define; 76=1 78=0 90=0
14; 0 and 0;          SNASVCMG; SesLimInit=0 ConnLoserLimit=0; ; define; 76=0 92=0
15; in use;           NIGHTLY;  Name=DAILY;                    633 NIGHTLY
15; renamed;          SPARE;    Name=SPARE2;                   ; delete define
16; time-out alone;   NIGHTLY;  Timeout=77;                    ; timeout; ; state=3
16; none any more;    NIGHTLY;  TimeoutButton=no;              ; no_timeout
16; nothing;          NIGHTLY;  Desc=Nightly_transfers;
17; others;           SPARE;    AutoAct=1;                     627; define; 90=1; state=3
17; all;              SPARE;    AutoAct=2 COSName=#BATCH;      628; define; 90=2; state=3
17; class of service; SPARE;    COSName=#INTER;                629; define; ; state=3
17; a rename, once;   SPARE;    Name=SPARE2;                   627; delete define; ; state=3
17; a new one;        ;         ;                              ; define; ; state=3
18; every place;      ;         Name=LASTMODE COSName=#BATCH SesLimMax=32767 SesLimInit=300 ConnWinnerLimit=200 ConnLoserLimit=99 AutoAct=150 RcvPacWindowMax=32767 RcvPacWindowInit=63; ; define; 72=63 74=32767 76=300 78=200 90=150 92=99 96=32767
)";

using PAIRS = std::vector<std::pair<std::string, std::string>>;

struct CASE {
    int step;
    std::string mode;
    PAIRS entered; // widgets without "*moded"
    PAIRS message, verbs, numbers, node;
};

// "a=b c" in pairs; "_" stands for a blank.
PAIRS read_pairs(const std::string &text) {
    PAIRS pairs;
    std::istringstream in(text);
    for (std::string word; in >> word;) {
        std::replace(word.begin(), word.end(), '_', ' ');
        const size_t equals = std::min(word.find('='), word.size());
        pairs.emplace_back(word.substr(0, equals), word.substr(std::min(equals + 1, word.size())));
    }
    return pairs;
}

CASE read_case(const std::string &line) {
    std::vector<std::string> columns;
    std::istringstream in(line);
    for (std::string column; std::getline(in, column, ';');) {
        column.erase(0, column.find_first_not_of(' '));
        columns.push_back(column);
    }
    columns.resize(8);
    std::vector<PAIRS> pairs;
    for (size_t column = 3; column < columns.size(); column++) {
        pairs.push_back(read_pairs(columns[column]));
    }
    return {std::stoi(columns[0]), columns[2], pairs[0], pairs[1], pairs[2], pairs[3], pairs[4]};
}

// A box breaks its lines.
std::string without_blanks(std::string text) {
    text.erase(std::remove(text.begin(), text.end(), ' '), text.end());
    return text;
}

std::string message_of(const PAIRS &message) {
    NB_CHAR text[1000] = "";
    PAIRS all = message;
    all.resize(3);
    if (!message.empty()) {
        vga_print_msg(text, sizeof(text), static_cast<NB_USHORT>(std::stoi(all[0].first)), "s s",
                      all[1].first.c_str(), all[2].first.c_str());
    }
    return without_blanks(text);
}

std::string verb_called(NB_USHORT opcode) {
    return opcode == NAP_DEFINE_MODE           ? "define"
           : opcode == NAP_DELETE_MODE         ? "delete"
           : opcode == NAP_DEFINE_LU62_TIMEOUT ? "timeout"
                                               : "no timeout";
}

// A number at its offset in the define verb, as wide as it is there.
void put_number(NAP_DEFINE_MODE_VERB &verb, size_t offset, NB_USHORT number) {
    auto *place = reinterpret_cast<NB_UCHAR *>(&verb) + offset;
    if ((offset >= 74 && offset <= 78) || offset == 70 || (offset >= 90 && offset <= 96)) {
        memcpy(place, &number, sizeof(number));
    } else {
        *place = static_cast<NB_UCHAR>(number);
    }
}

class ModeDialog : public NodeWindow, public LIVE_MODEL {
protected:
    void SetUp() override {
        NodeWindow::SetUp();
        scripted_nof.reset();
        gvga_exit_code = 0;
        gvga_supported[VGA_SUPPORTED_APPLY] = 1;
        vga_init_verb_queues();
        domain = std::make_unique<LIVE_DOMAIN>(SAMPLE_DOMAINS "/single.domain");
        build();
        vga_for_each(gvga_system->nodes, &VGA_NODE::links, [this](VGA_NODE &one) { node = &one; });
        node->node_state = NAP_NODE_STOPPED;
        auto spare = *find("PAYMODE")->vcb;
        set_ebcdic(spare.mode_name, "SPARE");
        spare.mode_chars.max_ru_size_low = 0;
        administer<NAP_DEFINE_MODE_VERB>(records::mode_def, spare);
        ASSERT_EQ(vga_display_node_window(node, 1), 1);
        gui::settle();
    }
    void TearDown() override {
        vga_empty_verb_queues();
        gvga_exit_code = 0;
        NodeWindow::TearDown();
    }

    VGA_MODE_DEF *find(const std::string &name) const {
        NB_UCHAR key[8];
        set_ebcdic(key, name);
        return vga_find_mode_def(node, key);
    }
    // What another administrator does; the program is told.
    template <class Verb, class Entry>
    void administer(const records::Schema &schema, const Entry &entry) {
        Verb verb = {};
        records::make_define_block(schema, reinterpret_cast<const NB_UCHAR *>(&entry),
                                   reinterpret_cast<NB_UCHAR *>(&verb));
        std::vector<NB_UCHAR> block(sizeof(verb));
        memcpy(block.data(), &verb, sizeof(verb));
        domain->execute(node_targets, block);
        auto *vcb = reinterpret_cast<NAP_VCB *>(block.data());
        ASSERT_EQ(vcb->primary_rc, NAP_OK);
        const VGA_PROCESS_STATE work = {node->target, vcb, 0};
        vga_verb_completed(&work);
    }

    void open(const std::string &mode) {
        const bool adds = mode.empty();
        form = vga_form_open(VGA_UID_MODE_DIALOG, &desc->common, adds ? nullptr : find(mode),
                             adds ? node : nullptr, adds ? VGA_FORM_REPEAT : VGA_FORM_CHANGE);
        ASSERT_NE(form, nullptr);
        gui::settle();
        gui::give_focus(form->common.shell);
    }
    Widget field(const std::string &name) const {
        return XtNameToWidget(form->common.widget, ("*moded" + name).c_str());
    }
    // Of a toggle "yes" or "no", of a menu the number of the item.
    void enter(const std::string &name, const std::string &text) const {
        for (NB_USHORT number = 0; number < forms::count(form); number++) {
            if (forms::row(form, number).widget == "*moded" + name) {
                forms::enter(form, number, text);
            }
        }
    }
    void push(const char *button) const { forms::push(forms::button(form, button)); }
    void answer_box(const char *key) const {
        gui::give_focus(form->common.modal_dlg.shell);
        gui::key(key);
    }
    void answer_next() {
        ASSERT_EQ(scripted_nof.in_flight.size(), 1U);
        EXPECT_FALSE(XtIsSensitive(vga_get_work_area(form->common.widget)));
        answer(0);
        gui::settle();
    }
    // Enters what the case says; returns what the define verb has to be.
    NAP_DEFINE_MODE_VERB enter_all(const CASE &one) {
        NAP_DEFINE_MODE_VERB verb = {};
        records::make_define_block(records::mode_def,
                                   static_cast<const NB_UCHAR *>(vga_form_shown(form)),
                                   reinterpret_cast<NB_UCHAR *>(&verb));
        PAIRS entered = one.entered;
        if (one.mode.empty()) {
            entered.insert(entered.begin(),
                           {{"Name", "NEW" + std::to_string(opened++)}, {"COSName", "#INTER"}});
        }
        for (const auto &[name, text] : entered) {
            enter(name, text);
            if (name == "Name") {
                set_ebcdic(verb.mode_name, gui::field_text(field(name)));
            } else if (name == "COSName") {
                set_ebcdic(verb.mode_chars.cos_name, text);
            } else if (name == "Desc") {
                strncpy(reinterpret_cast<char *>(verb.mode_chars.description), text.c_str(),
                        sizeof(verb.mode_chars.description));
            }
        }
        for (const auto &[offset, number] : one.numbers) {
            put_number(verb, std::stoul(offset), static_cast<NB_USHORT>(std::stoul(number)));
        }
        return verb;
    }
    void expect_verbs(const CASE &one, const NAP_DEFINE_MODE_VERB &wanted) {
        const auto from_name = [](const auto *verb) {
            return std::string(reinterpret_cast<const char *>(verb) + 12, 126 - 12);
        };
        for (const auto &[called, nothing] : one.verbs) {
            ASSERT_FALSE(scripted_nof.in_flight.empty());
            const NAP_VCB *vcb = scripted_nof.in_flight[0].vcb;
            EXPECT_EQ(verb_called(vcb->opcode), called);
            if (vcb->opcode == NAP_DEFINE_MODE) {
                EXPECT_EQ(from_name(vcb), from_name(&wanted));
            }
            answer_next();
        }
        EXPECT_EQ(gui::box_text(&form->common), "") << "the node took it";
        EXPECT_EQ(form->common.in_use, one.mode.empty() ? 1 : 0) << "new ones come in a row";
    }
    void try_case(const CASE &one) {
        const std::string before = vga_dump_model();
        open(one.mode);
        const NAP_DEFINE_MODE_VERB wanted = enter_all(one);
        push("OK");
        EXPECT_EQ(without_blanks(gui::box_text(&form->common)), message_of(one.message));
        if (!one.message.empty() && !one.verbs.empty()) {
            answer_box("Escape");
            EXPECT_TRUE(scripted_nof.in_flight.empty());
            push("OK");
            EXPECT_EQ(vga_dump_model(), before);
            answer_box("Return");
        }
        if (one.message.empty() || !one.verbs.empty()) {
            expect_verbs(one, wanted);
        } else {
            answer_box("Return");
            EXPECT_EQ(XmGetFocusWidget(form->common.shell), field(one.entered.back().first));
            EXPECT_EQ(vga_dump_model(), before);
        }
        EXPECT_TRUE(scripted_nof.in_flight.empty());
        vga_close_children(&form->common, 1, 1);
        gui::settle();
    }

    VGA_FORM *form = nullptr;
    int opened = 0;
};

class ModeSteps : public ModeDialog, public testing::WithParamInterface<int> {};

TEST_P(ModeSteps, Step) {
    std::istringstream lines(cases + 1);
    for (std::string line; std::getline(lines, line);) {
        const CASE one = read_case(line);
        if (one.step != GetParam()) {
            continue;
        }
        SCOPED_TRACE(line);
        NAP_NODE_INFO &info = node->node_data.info;
        info.node_type = NAP_NETWORK_NODE;
        info.cos_mapping = 0;
        node->node_state = NAP_NODE_STOPPED;
        for (const auto &[name, value] : one.node) {
            const auto number = static_cast<NB_UCHAR>(std::stoi(value));
            name == "state"  ? node->node_state = number
            : name == "type" ? info.node_type = number
                             : info.cos_mapping = number;
        }
        try_case(one);
    }
}

INSTANTIATE_TEST_SUITE_P(All, ModeSteps, testing::Range(1, 19));

TEST_F(ModeDialog, OldModeComesBackWhenTheNewNameIsRefused) {
    const NAP_MODE_DEF_DATA kept = *find("SPARE")->vcb;
    open("SPARE");
    for (const bool both : {false, true}) {
        enter("Name", "SPARE2");
        push("OK");
        answer_next();
        EXPECT_EQ(find("SPARE"), nullptr);
        scripted_nof.complete(0, NAP_PARAMETER_CHECK, NAP_UNKNOWN_RESOURCE);
        gui::settle();
        ASSERT_EQ(scripted_nof.in_flight.size(), 1U);
        if (both) {
            scripted_nof.complete(0, NAP_PARAMETER_CHECK, NAP_UNKNOWN_RESOURCE);
        } else {
            answer(0);
        }
        gui::settle();
        const std::string told = without_blanks(gui::box_text(&form->common));
        EXPECT_EQ(told.substr(0, 40),
                  message_of({{both ? "630" : "634", ""}, {"SPARE", ""}}).substr(0, 40));
        answer_box("Return");
        EXPECT_EQ(gui::field_text(field("Name")), "SPARE2") << "what was entered stays";
        EXPECT_EQ(find("SPARE") != nullptr, !both);
        EXPECT_EQ(form->common.parent_item, find("SPARE"));
        EXPECT_TRUE(both || memcmp(find("SPARE")->vcb, &kept, sizeof(kept)) == 0);
    }
    push("OK"); // it can still be defined
    EXPECT_EQ(gui::box_text(&form->common), "");
    answer_next();
    EXPECT_NE(find("SPARE2"), nullptr);
}

TEST_F(ModeDialog, EndsWhenTheDeletionCannotBeQueued) {
    open("SPARE");
    enter("Name", "SPARE2");
    no_memory = true;
    XtCallCallbacks(forms::button(form, "OK"), XmNactivateCallback, nullptr);
    no_memory = false;
    EXPECT_EQ(gvga_exit_code, VGA_EXIT_INTERNAL);
    EXPECT_TRUE(scripted_nof.in_flight.empty());
    EXPECT_NE(find("SPARE"), nullptr);
}

TEST_F(ModeDialog, GoesOnWithOneThatWasApplied) {
    // A rename that is applied brings the time-out along; another administrator's follows.
    open("SPARE");
    enter("Name", "SPARE2");
    enter("TimeoutButton", "yes");
    enter("Timeout", "0050");
    push("*modedApplyButton");
    for (int verbs = 0; verbs < 3; verbs++) {
        answer_next();
    }
    EXPECT_EQ(form->common.parent_item, find("SPARE2"));
    EXPECT_EQ(gui::field_text(field("Timeout")), "50") << "as the node has it";
    EXPECT_FALSE(XtIsSensitive(form->apply_button));
    auto timeout = *vga_find_mode_timeout(node, find("SPARE2")->name)->vcb;
    timeout.def_data.timeout = 51;
    administer<NAP_DEFINE_LU62_TIMEOUT_VERB>(records::lu62_timeout, timeout);
    EXPECT_EQ(gui::field_text(field("Timeout")), "51");
    enter("Timeout", "52");
    push("*modedResetButton");
    EXPECT_EQ(gui::field_text(field("Timeout")), "51");
    enter("Name", "SPARE3");
    push("OK");
    for (int verbs = 0; verbs < 4; verbs++) { // the old time-out goes, too
        answer_next();
    }
    EXPECT_EQ(vga_find_mode_timeout(node, timeout.resource_name), nullptr);
    EXPECT_EQ(form->common.in_use, 0);
}

} // namespace
