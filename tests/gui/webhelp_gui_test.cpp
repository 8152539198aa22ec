// The web entries of the node window's help menu, as the description of the windows has them.

#include "gui_windows.h"

#include "vgadgutl.h"
#include "vgamsgs.h"

#include <Xm/RowColumn.h>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace {

TEST(WebHelpMenu, EntriesShowTheirPages) {
    gui::open_windows();
    char name[] = "/tmp/webhelpXXXXXX";
    const std::filesystem::path folder = mkdtemp(name);
    const std::filesystem::path shown = folder / "shown";
    const std::string browser = "echo >" + shown.string(); // the address follows
    XrmPutStringResource(&gvga_resource_database, "Quiladmin*webBrowser", browser.c_str());
    gvga_messages[228] = "file:///help/index.html";
    gvga_messages[229] = "file:///help/support.html";

    const Widget shell = gui::make_shell("menu", 50, 50, 300, 200);
    const Widget menu = XtVaCreateManagedWidget("menu", xmRowColumnWidgetClass, shell, nullptr);
    for (const auto &[entry, page] : {std::pair{"nodewHelpWeb", gvga_messages[228]},
                                      std::pair{"nodewHelpWebSupport", gvga_messages[229]}}) {
        Widget button = nullptr;
        MrmType type;
        ASSERT_EQ(
            MrmFetchWidget(gvga_uil_hierarchy, const_cast<char *>(entry), menu, &button, &type),
            MrmSUCCESS)
            << entry;
        XtManageChild(button);
        gui::show(shell);
        gui::click(button, 10, 10);
        std::string address;
        EXPECT_TRUE(gui::wait_for([&] { return !!std::getline(std::ifstream(shown), address); }))
            << entry;
        EXPECT_EQ(address, page);
        std::filesystem::remove(shown);
    }
    XtDestroyWidget(shell);
    std::filesystem::remove_all(folder);
}

} // namespace
