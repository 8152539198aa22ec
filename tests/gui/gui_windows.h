/* What tests of the program's own windows begin with: an installation to find everything in, and
 * the descriptions of the windows. */
#ifndef GUI_WINDOWS_H
#define GUI_WINDOWS_H

#include "gui_support.h" // before the X headers

#include "colours.h"
#include "commonnames.h"
#include "linetable.h"
#include "messages.h"
#include "nbbase.h"
#include "screenresources.h"
#include "toolkit.h"
#include "vgadgutl.h"
#include <cstdlib>
#include <filesystem>

namespace gui {

/* The build tree above this program is laid out like an installed prefix, but its path may be too
 * long for one: a short link leads there while this lives.  A prefix that is set already stays. */
class PREFIX {
public:
    PREFIX() {
        if (getenv("SNA_PREFIX") == nullptr) {
            char name[] = "/tmp/guiXXXXXX";
            folder = mkdtemp(name);
            const std::filesystem::path tree =
                std::filesystem::read_symlink("/proc/self/exe").parent_path().parent_path();
            std::filesystem::create_directory_symlink(tree, folder / "sna");
            setenv("SNA_PREFIX", (folder / "sna").c_str(), 1);
        }
        nba_set_app_defaults_path();
    }
    ~PREFIX() {
        if (!folder.empty()) {
            std::filesystem::remove_all(folder);
        }
    }
    PREFIX(const PREFIX &) = delete;
    PREFIX &operator=(const PREFIX &) = delete;

private:
    std::filesystem::path folder;
};

/* Opens the display and the descriptions of the windows, as start-up does. */
inline void open_windows() {
    open();
    vga_work_out_colours(gvga_display, gvga_screen);
    vga_add_screen_resources(gvga_screen, &gvga_resource_database);
    char file[] = "quildlg.uid";
    String files[] = {file};
    ASSERT_EQ(MrmOpenHierarchyPerDisplay(gvga_display, 1, files, nullptr, &gvga_uil_hierarchy),
              MrmSUCCESS);
    vga_register_common_names();
    vga_viewer_set_types(gvga_viewer_types.data(), VGA_VIEWER_TYPE_COUNT);
}

} // namespace gui

#endif
