/* The two ways to read a domain that bench_build compares: the program's model build, and the
 * floor, a bare loop that asks the same, reads the same bytes, and makes as many blocks, copies and
 * index entries of them.  Each runs in a process of its own against a running node software. */
#ifndef BUILDRUN_H
#define BUILDRUN_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

/* How long the main loop was held by one round: bucket n counts rounds of less than 2^n ms. */
constexpr size_t hold_buckets = 8;

struct BUILD_RESULT {
    double seconds;        /* wall clock, from the first verb to the complete model */
    double cpu_seconds;    /* of this process, meanwhile */
    double return_seconds; /* model only: freeing and reading the first node when it returns */
    double delete_seconds; /* model only: deleting everything again */
    uint64_t entries;      /* of all lists */
    uint64_t bytes;        /* of these */
    uint64_t memory;       /* bytes that the process grew by */
    uint64_t holds[hold_buckets];
    double longest_hold; /* seconds */
};

/* A verb as it was issued, and what it took to process its answer. */
struct RECORDED_VERB {
    uint32_t target; /* as the recording process got it */
    std::vector<unsigned char> block;
    uint32_t new_target; /* what the answer of an open or connect verb brought; 0: nothing */
};

/* Builds the model of the domain behind the socket; with `verbs`, records every verb. */
BUILD_RESULT build_model(std::vector<RECORDED_VERB> *verbs);

/* Does the recorded verbs again, `ahead` of them in flight, without a model. */
BUILD_RESULT build_floor(const std::string &socket, const std::vector<RECORDED_VERB> &verbs,
                         size_t ahead);

/* Heap in use, in bytes. */
uint64_t heap_in_use();

#endif
