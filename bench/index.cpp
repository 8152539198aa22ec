/* The ordered index beside boost::intrusive::avl_set and std::map: nanoseconds an operation and the
 * ratio of ours to theirs, for 8-byte names.
 *
 * What can be the same is the same for all three: the comparator, called through a pointer; the
 * addresses of the records, one cache line each, written just before; no allocation; insertion and
 * deletion called, not inlined; nodes that know that they are in no tree (which std::map cannot).
 * They take turns within every round, each round in another order.  Times are processor time, and
 * the table shows the least of all rounds; a ratio is the median of the ratios within the rounds,
 * so that a machine that is busy with other things slows both sides of it alike.
 *
 * Names come in two ways: in index order, as lists arrive, and shuffled; all that is not insertion
 * runs on the shuffled one.  Usage: bench_index [largest number of names] */
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <map>
#include <memory>
#include <numeric>
#include <random>
#include <vector>

#include <boost/intrusive/avl_set.hpp>

#include "ntlavl.h"
#include "ntlcomn.h"
#include "ntlname.h"

namespace {

struct Name {
    NB_UCHAR text[NTL_NAME_WIDTH];
};

/* Read at run time, so that no candidate gets the comparator inlined. */
volatile AVL_COMPARE comparator = ntl_compare_name;

struct Less {
    AVL_COMPARE compare = comparator;
    bool operator()(const Name &a, const Name &b) const { return compare(&a, &b) < 0; }
};

/* Where every candidate in turn puts its records: one to a slot, in the order of arrival.  A slot
 * is larger than what an index needs of it, as the records of the model are. */
struct alignas(128) Slot {
    unsigned char bytes[128];
};

class Slots {
public:
    /* Gives all slots up and clears `count` of them. */
    static void reset(size_t count) {
        slots_.assign(count, Slot{});
        used_ = 0;
    }
    static void *take() { return &slots_[used_++]; }
    template <typename Record> static Record *take_all(size_t count) {
        static_assert(sizeof(Record) == sizeof(Slot));
        auto records = static_cast<Record *>(take());
        std::uninitialized_default_construct_n(records, count);
        return records;
    }

private:
    static inline std::vector<Slot> slots_;
    static inline size_t used_;
};

template <typename Value> struct SlotAllocator {
    using value_type = Value;
    SlotAllocator() = default;
    template <typename Other> SlotAllocator(const SlotAllocator<Other> &) {}
    Value *allocate(size_t) {
        static_assert(sizeof(Value) <= sizeof(Slot));
        return static_cast<Value *>(Slots::take());
    }
    void deallocate(Value *, size_t) {}
    bool operator==(const SlotAllocator &) const { return true; }
};

struct alignas(Slot) OurRecord {
    AVL_NODE node;
    Name name;
};

using BoostHook =
    boost::intrusive::avl_set_base_hook<boost::intrusive::link_mode<boost::intrusive::safe_link>>;

struct alignas(Slot) BoostRecord : BoostHook {
    Name name;
};

struct NameOf {
    using type = Name;
    const type &operator()(const BoostRecord &record) const { return record.name; }
};

using BoostSet = boost::intrusive::avl_set<BoostRecord, boost::intrusive::key_of_value<NameOf>,
                                           boost::intrusive::compare<Less>,
                                           boost::intrusive::constant_time_size<false>>;

/* Each candidate holds its records in the order of arrival.  Look-ups return whether there was an
 * answer, the walk how many records it met. */
#define BENCH_CALLED [[gnu::noinline]]

class Ours {
public:
    explicit Ours(const std::vector<Name> &names)
        : records_(Slots::take_all<OurRecord>(names.size())) {
        for (size_t at = 0; at < names.size(); at++) {
            OurRecord &record = records_[at];
            record.name = names[at];
            AVL_INIT_NODE(record.node, &record, &record.name);
        }
    }
    void insert(size_t at) { ntl_avl_insert(&tree_, &records_[at].node); }
    void remove(size_t at) { ntl_avl_delete(&tree_, &records_[at].node); }
    bool find(const Name &name) const { return ntl_avl_find(&tree_, &name) != nullptr; }
    bool find_next(const Name &name) const { return ntl_avl_find_next(&tree_, &name) != nullptr; }
    size_t walk() const {
        size_t count = 0;
        for (auto record = static_cast<OurRecord *>(AVL_FIRST(tree_)); record != nullptr;
             record = static_cast<OurRecord *>(ntl_avl_next(&record->node))) {
            count++;
        }
        return count;
    }

private:
    OurRecord *records_;
    AVL_TREE tree_ = {comparator, nullptr, nullptr, nullptr};
};

class Boost {
public:
    explicit Boost(const std::vector<Name> &names)
        : records_(Slots::take_all<BoostRecord>(names.size())) {
        for (size_t at = 0; at < names.size(); at++) {
            records_[at].name = names[at];
        }
    }
    ~Boost() { set_.clear(); }
    Boost(const Boost &) = delete;
    Boost &operator=(const Boost &) = delete;
    BENCH_CALLED void insert(size_t at) { set_.insert(records_[at]); }
    BENCH_CALLED void remove(size_t at) { set_.erase(set_.iterator_to(records_[at])); }
    bool find(const Name &name) const { return set_.find(name) != set_.end(); }
    bool find_next(const Name &name) const { return set_.upper_bound(name) != set_.end(); }
    size_t walk() const { return static_cast<size_t>(std::distance(set_.begin(), set_.end())); }

private:
    BoostRecord *records_;
    BoostSet set_;
};

class Map {
public:
    explicit Map(const std::vector<Name> &names) : names_(names), places_(names.size()) {}
    BENCH_CALLED void insert(size_t at) { places_[at] = map_.emplace(names_[at], at).first; }
    BENCH_CALLED void remove(size_t at) { map_.erase(places_[at]); }
    bool find(const Name &name) const { return map_.find(name) != map_.end(); }
    bool find_next(const Name &name) const { return map_.upper_bound(name) != map_.end(); }
    size_t walk() const { return static_cast<size_t>(std::distance(map_.begin(), map_.end())); }

private:
    using Tree = std::map<Name, size_t, Less, SlotAllocator<std::pair<const Name, size_t>>>;
    std::vector<Name> names_;
    std::vector<Tree::iterator> places_;
    Tree map_;
};

enum Operation { InsertInOrder, InsertShuffled, Find, FindNext, Walk, Delete, Operations };
constexpr std::array<const char *, Operations> operation_names = {
    "insert, in order", "insert, shuffled", "find", "find next", "walk", "delete"};

using Times = std::array<double, Operations>; /* nanoseconds an operation */

struct Workload {
    std::vector<Name> in_order;
    std::vector<Name> shuffled;
    std::vector<Name> asked;     /* the names again, in an order of their own */
    std::vector<size_t> removal; /* positions in `shuffled`, in an order of their own */
};

/* EBCDIC names of the form LU000000, whose digits ascend as their bytes do. */
Workload make_workload(size_t size, std::mt19937_64 &random) {
    Workload work;
    for (size_t number = 0; number < size; number++) {
        Name name = {{0xD3, 0xE4}};
        size_t rest = number;
        for (size_t digit = NTL_NAME_WIDTH - 1; digit >= 2; digit--, rest /= 10) {
            name.text[digit] = static_cast<NB_UCHAR>(0xF0 + rest % 10);
        }
        work.in_order.push_back(name);
    }
    work.shuffled = work.asked = work.in_order;
    work.removal.resize(size);
    std::iota(work.removal.begin(), work.removal.end(), size_t{0});
    std::shuffle(work.shuffled.begin(), work.shuffled.end(), random);
    std::shuffle(work.asked.begin(), work.asked.end(), random);
    std::shuffle(work.removal.begin(), work.removal.end(), random);
    return work;
}

/* Keeps the results alive: the sum of what all look-ups and walks found. */
size_t found;

double processor_nanoseconds() {
    timespec now;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e9 + static_cast<double>(now.tv_nsec);
}

template <typename Run> double time_each(size_t operations, Run run) {
    const double start = processor_nanoseconds();
    run();
    return (processor_nanoseconds() - start) / static_cast<double>(operations);
}

template <typename Candidate> double time_inserts(Candidate &candidate, size_t size) {
    return time_each(size, [&] {
        for (size_t at = 0; at < size; at++) {
            candidate.insert(at);
        }
    });
}

template <typename Candidate> Times time_candidate(const Workload &work) {
    const size_t size = work.in_order.size();
    Times times;
    Slots::reset(size);
    {
        Candidate candidate(work.in_order);
        times[InsertInOrder] = time_inserts(candidate, size);
    }
    Slots::reset(size);
    Candidate candidate(work.shuffled);
    times[InsertShuffled] = time_inserts(candidate, size);
    times[Find] = time_each(size, [&] {
        for (const Name &name : work.asked) {
            found += candidate.find(name);
        }
    });
    times[FindNext] = time_each(size, [&] {
        for (const Name &name : work.asked) {
            found += candidate.find_next(name);
        }
    });
    times[Walk] = time_each(size, [&] { found += candidate.walk(); });
    times[Delete] = time_each(size, [&] {
        for (size_t at : work.removal) {
            candidate.remove(at);
        }
    });
    return times;
}

double median(std::vector<double> values) {
    auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

enum Who { OurIndex, BoostAvlSet, StdMap, Candidates };
using Round = std::array<Times, Candidates>;

constexpr std::array<Times (*)(const Workload &), Candidates> timers = {
    time_candidate<Ours>, time_candidate<Boost>, time_candidate<Map>};

double least(const std::vector<Round> &rounds, Who who, size_t op) {
    double value = rounds.front()[who][op];
    for (const Round &round : rounds) {
        value = std::min(value, round[who][op]);
    }
    return value;
}

double median_ratio(const std::vector<Round> &rounds, Who other, size_t op) {
    std::vector<double> ratios;
    for (const Round &round : rounds) {
        ratios.push_back(round[OurIndex][op] / round[other][op]);
    }
    return median(std::move(ratios));
}

std::vector<Round> run_rounds(size_t size, std::mt19937_64 &random) {
    std::vector<Round> rounds(std::clamp<size_t>(3000000 / size, 7, 301));
    for (size_t turn = 0; turn < rounds.size(); turn++) {
        Workload work = make_workload(size, random);
        for (size_t at = 0; at < Candidates; at++) {
            const size_t who = (turn + at) % Candidates;
            rounds[turn][who] = timers[who](work);
        }
    }
    return rounds;
}

struct Geometric {
    double sum = 0;
    int count = 0;
    void add(double ratio) {
        sum += std::log(ratio);
        count++;
    }
    double mean() const { return std::exp(sum / count); }
};

} // namespace

int main(int argc, char **argv) {
    size_t largest = argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 1000000;
    std::mt19937_64 random(20240229);
    Geometric to_boost;
    Geometric to_map;
    std::printf("%8s  %-17s %9s %9s %9s %8s %8s\n", "names", "operation", "ns ours", "ns boost",
                "ns map", "/boost", "/map");
    for (size_t size = 1000; size <= largest; size *= 10) {
        const std::vector<Round> rounds = run_rounds(size, random);
        for (size_t op = 0; op < Operations; op++) {
            const double boost_ratio = median_ratio(rounds, BoostAvlSet, op);
            const double map_ratio = median_ratio(rounds, StdMap, op);
            to_boost.add(boost_ratio);
            to_map.add(map_ratio);
            std::printf("%8zu  %-17s %9.1f %9.1f %9.1f %8.2f %8.2f\n", size, operation_names[op],
                        least(rounds, OurIndex, op), least(rounds, BoostAvlSet, op),
                        least(rounds, StdMap, op), boost_ratio, map_ratio);
        }
    }
    std::printf("geometric mean of the ratios: %.2f to boost, %.2f to map (%zu answers)\n",
                to_boost.mean(), to_map.mean(), found);
    return 0;
}
