/* The model's checker as an expectation. */
#ifndef CHECKEDMODEL_H
#define CHECKEDMODEL_H

#include <gtest/gtest.h>

#include "modelcheck.h"
#include "modeldump.h"
#include "modelwalk.h"

/* Fails the test for everything that is wrong with the model; returns how many records it has. */
inline size_t check_model(NB_VOID) {
    const VGA_MODEL_FINDINGS findings = vga_check_model();
    for (const std::string &wrong : findings.wrong) {
        ADD_FAILURE() << wrong;
    }
    return findings.records;
}

#endif
