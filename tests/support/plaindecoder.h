#pragma once
// A second timecode decoder, for comparisons. It includes nothing of the program and is written another way:
// the record is a sequence of bits with a recurrence, a register is looked at place by place, zero lines are
// doubles that hold whole numbers, and nothing is remembered to save work.

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

/// One kind of record.
struct PlainRecord {
    std::string name;
    double carrier;            ///< Hz at nominal speed
    bool mirrored;             ///< the direction test reads the other way round
    bool leftFirst;            ///< the left channel carries the bits' heights, else the right one
    bool low;                  ///< a height is taken below the zero line, else above it
    int bits;                  ///< of the register
    std::int64_t seed;         ///< register at position 0
    std::vector<int> feedback; ///< places of the register that make up the next bit; 0 is the oldest bit
    int length;                ///< positions that have a name

    /// The register one position on: the oldest bit leaves, the sum of the fed back ones enters at the top.
    std::int64_t next(std::int64_t code) const {
        std::int64_t sum = 0;
        for (const int place : feedback) {
            sum += bit(code, place);
        }
        return code / 2 + sum % 2 * top();
    }
    /// The register one position back. The bit that left is what makes the sum come to the present top bit.
    std::int64_t previous(std::int64_t code) const {
        std::int64_t sum = bit(code, bits - 1);
        for (const int place : feedback) {
            sum += place == 0 ? 0 : bit(code, place - 1);
        }
        return code * 2 % (2 * top()) + sum % 2;
    }
    std::int64_t top() const { return std::int64_t{1} << (bits - 1); }
    static std::int64_t bit(std::int64_t code, int place) { return (code >> place) & 1; }
};

inline const std::vector<PlainRecord>& plainRecords() {
    static const std::vector<int> sideA{0, 2, 5, 6, 7, 8, 13, 14, 16, 17};
    static const std::vector<int> sideB{0, 3, 4, 6, 7, 12, 13, 14, 15, 18};
    static const std::vector<int> sparse{0, 6, 12, 18};
    static const std::vector<PlainRecord> records{
        {"generic_V2", 1000, false, false, false, 20, 364567, sideA, 712000},
        {"serato_sideA_FullDVS", 1000, false, false, false, 20, 364567, sideA, 712000},
        {"serato_sideB_FullDVS", 1000, false, false, false, 20, 586694, sideB, 922000},
        {"traktor_sideA", 2000, true, true, true, 23, 1262851, sparse, 1500000},
        {"traktor_sideB", 2000, true, true, true, 23, 3278444, sparse, 2110000},
    };
    return records;
}

inline const PlainRecord& plainRecord(const std::string& name) {
    return *std::find_if(plainRecords().begin(), plainRecords().end(),
                         [&](const PlainRecord& record) { return record.name == name; });
}

/// The position of each register value of a record, or -1. Made once for each record.
inline const std::vector<int>& plainPositions(const PlainRecord& record) {
    static std::map<std::string, std::vector<int>> made;
    std::vector<int>& places = made[record.name];
    if (places.empty()) {
        places.assign(static_cast<std::size_t>(2 * record.top()), -1);
        // All bits of the record in one row; the register at a position is the stretch that starts there.
        std::vector<int> row;
        for (int place = 0; place < record.bits; ++place) {
            row.push_back(static_cast<int>(PlainRecord::bit(record.seed, place)));
        }
        std::int64_t code = record.seed;
        for (int position = 0; position < record.length; ++position) {
            places[static_cast<std::size_t>(code)] = position;
            int sum = 0;
            for (const int place : record.feedback) {
                sum += row[static_cast<std::size_t>(position + place)];
            }
            row.push_back(sum % 2);
            code = code / 2 + sum % 2 * record.top();
        }
    }
    return places;
}

class PlainDecoder {
public:
    struct Channel {
        bool positive = false;
        bool swapped = false;
        double zero = 0.0; // a whole number
        std::int64_t crossingTicker = 0;
    };

    PlainDecoder(const PlainRecord& of, double framesPerSecond, bool phono)
        : record(of)
        , dt(1.0 / std::floor(framesPerSecond))
        , alpha(dt / (dt + 0.001))
        , threshold((phono ? 4.0 : 128.0) * 65536.0) {}

    void frame(int left, int right) {
        const double first = 65536.0 * (record.leftFirst ? left : right);
        const double second = 65536.0 * (record.leftFirst ? right : left);
        cross(primary, first);
        cross(secondary, second);
        double observed = 0.0;
        if (primary.swapped || secondary.swapped) {
            const bool alike = primary.positive == secondary.positive;
            const bool on = (primary.swapped ? !alike : alike) != record.mirrored;
            if (on != forwards) {
                forwards = on;
                validCounter = 0;
            }
            observed = (on ? 1.0 : -1.0) * (1.0 / record.carrier * 0.25);
        }
        const double expected = x + v * dt;
        const double off = observed - expected;
        x = expected + off / 512.0;
        v = v + off * (1.0 / 131072.0) / dt;
        x = x - observed;
        if (secondary.swapped && primary.positive != record.low) {
            const double height = std::abs(std::trunc(first / 2.0) - std::trunc(primary.zero / 2.0));
            read(static_cast<std::int64_t>(height));
        }
        timecodeTicker += 1;
    }

    int position() const {
        return validCounter > 24 ? plainPositions(record)[static_cast<std::size_t>(bitstream)] : -1;
    }

    const PlainRecord& record;
    double dt;
    double alpha;
    double threshold;
    bool forwards = true;
    Channel primary;
    Channel secondary;
    double x = 0.0;
    double v = 0.0;
    std::int64_t refLevel = 2147483647;
    std::int64_t bitstream = 0;
    std::int64_t timecode = 0;
    std::int64_t validCounter = 0;
    std::int64_t timecodeTicker = 0;
    std::int64_t largest = 0; // of all heights read

private:
    void cross(Channel& ch, double value) const {
        const bool above = value > ch.zero + threshold;
        const bool below = value < ch.zero - threshold;
        ch.swapped = ch.positive ? below : above;
        ch.positive = ch.positive != ch.swapped;
        ch.crossingTicker = ch.swapped ? 0 : ch.crossingTicker + 1;
        ch.zero = std::trunc(ch.zero + (value - ch.zero) * alpha);
    }

    void read(std::int64_t height) {
        largest = std::max(largest, height);
        const int bit = height > refLevel ? 1 : 0;
        if (forwards) {
            timecode = record.next(timecode);
            bitstream = bitstream / 2 + bit * record.top();
        } else {
            timecode = record.previous(timecode);
            bitstream = bitstream * 2 % (2 * record.top()) + bit;
        }
        validCounter = timecode == bitstream ? validCounter + 1 : 0;
        timecode = bitstream;
        timecodeTicker = 0;
        refLevel = refLevel - refLevel / 48 + height / 48;
    }
};
