/* For tests of what is reported: collects the problem log while it lives. */
#ifndef REPORTS_H
#define REPORTS_H

#include "nbbase.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <unistd.h>
#include <utility>

class REPORTS {
public:
    REPORTS() { nba_pd_set_log(file.c_str(), NB_PD_ALL); }
    REPORTS(const REPORTS &) = delete;
    REPORTS &operator=(const REPORTS &) = delete;
    ~REPORTS() {
        nba_pd_set_log(nullptr, NB_PD_EXCEPTION);
        std::filesystem::remove(file);
    }

    /* The records since the last call, with the counts of those that came again. */
    std::string take() {
        nba_pd_set_log(file.c_str(), NB_PD_ALL);
        std::ifstream stream(file);
        std::string text(std::istreambuf_iterator<char>(stream), {});
        return text.substr(std::min(text.size(), std::exchange(taken, text.size())));
    }

private:
    std::filesystem::path file =
        std::filesystem::temp_directory_path() / ("reports." + std::to_string(getpid()));
    size_t taken = 0;
};

#endif
