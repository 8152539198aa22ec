#include "commands.h"
#include "nbbase.h"

int main(int argc, char **argv) {
    return nba_check_prefix("quilctl") != 0 ? cli::run(argc, argv) : cli::UNREACHABLE;
}
