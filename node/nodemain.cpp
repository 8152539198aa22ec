#include "command.h"

int main(int argc, char **argv) {
    return node::run_snanode(argc, argv);
}
