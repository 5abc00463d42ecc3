#pragma once

/// What happens to a decoded code before it reaches a point. After a reset the first code closes the gate
/// (the stored value, not the fresh one, is tested): it stays closed until the next reset, points carry -1
/// and positions are dead-reckoned from the speed alone. Realtime-safe.
struct CodeGate {
    static constexpr int runIn = 1000; ///< stored codes up to here close the gate
    static constexpr int jump = 500;   ///< codes further apart than this are a jump of the needle

    int lastCode = 0;
    bool jumpForward = false;
    bool jumpBackward = false;

    /// What the caller has to do.
    struct Result {
        int code;       ///< after the gate
        bool newAnchor; ///< the position restarts from this code
    };

    /// For a valid code.
    Result pass(int code) {
        bool newAnchor = false;
        if (lastCode <= runIn) {
            code = -1;
        } else if (lastCode != code) {
            if (code > lastCode + jump) {
                jumpForward = true;
            } else if (code < lastCode - jump) {
                jumpBackward = true;
            }
            newAnchor = true;
        }
        lastCode = code;
        return {code, newAnchor};
    }

    void clear() { *this = CodeGate(); }
};
