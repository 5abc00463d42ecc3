#pragma once

#include <csignal>

#include <sys/resource.h>

/// While it lives no file of this process grows beyond `bytes`, as on a disk that fills up.
class FullDisk {
public:
    explicit FullDisk(rlim_t bytes) {
        std::signal(SIGXFSZ, SIG_IGN);
        m_set = getrlimit(RLIMIT_FSIZE, &m_before) == 0;
        rlimit small = m_before;
        small.rlim_cur = bytes;
        m_set = m_set && setrlimit(RLIMIT_FSIZE, &small) == 0;
    }
    ~FullDisk() {
        if (m_set) {
            setrlimit(RLIMIT_FSIZE, &m_before);
        }
    }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;
    bool isSet() const { return m_set; }

private:
    rlimit m_before{};
    bool m_set = false;
};
