/* A list of lines, some below others: the contents, the index, what a search found. */
#ifndef HELP_OUTLINE_H
#define HELP_OUTLINE_H

#include "canvas.h"

namespace help {

class OutlineView : public Canvas {
public:
    OutlineView(Widget parent, const char *name, const Look &view_look);

    /* Shows other lines; those above others are closed, but for the first of all, or open. */
    void show_entries(std::vector<Entry> lines, bool all_open = false);

    /* Shown when there is no line. */
    void set_empty_text(std::string text) { empty_text = std::move(text); }

    /* Selects the first line of that topic and opens what it lies in; nothing is called. */
    void select_topic(const std::string &topic);

    /* Selects the first line that begins with the text, without case. */
    void select_text(const std::string &text);

    /* Selects the first line that there is. */
    void select_first();

    const Entry *selection() const;

    /* Something was chosen: by a click, or by Return. */
    std::function<void(const std::string &topic)> on_choice;

private:
    struct Line {
        Entry entry;
        bool has_children, open;
    };

    int content_height() override;
    void resized() override;
    void paint(XftDraw *draw) override;
    bool key(Key which) override;
    void point(Point what, int x, int y, unsigned state) override;
    void paint_line(XftDraw *draw, const Line &line, int y, bool selected) const;
    void paint_sign(XftDraw *draw, int x, int y, bool open, Colour colour) const;
    int line_height() const { return look.em() + look.em() / 4; }
    int indent(const Entry &entry) const { return look.em() / 2 + entry.depth * look.em(); }
    void find_visible();
    void select(int line);
    void open(int line, bool on);
    int parent_of(int line) const;
    bool sideways(bool right);

    std::vector<Line> lines;
    std::vector<int> visible; // lines that stand in no closed one
    int selected = -1;        // a line
    bool painted = false;
    std::string empty_text;
};

} // namespace help

#endif
