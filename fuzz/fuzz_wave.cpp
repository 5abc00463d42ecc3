// The WAV reader: it gives what the header says, and never more than the file holds.

#include "module/wavedata.h"
#include "module/wavheader.h"

#include "fuzzfile.h"

#include <QBuffer>

#include <algorithm>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const FuzzFile file;
    const auto wave = readWave(file.with(data, size));

    QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    QBuffer buffer(&bytes);
    demand(buffer.open(QIODevice::ReadOnly));
    const WavHeader header = readWavHeader(buffer);
    demand(wave->sampleRate() == header.sampleRate && wave->channels() == header.channels);

    const std::uint64_t total = header.channels == 0 ? 0 : header.samplesIn(static_cast<qint64>(size));
    std::uint64_t held = 0;
    for (std::size_t channel = 0; channel < wave->channels(); ++channel) {
        const auto samples = wave->samples(channel);
        held += samples.size();
        demand(samples.size() <= wave->length());
        for (std::size_t i = 0; i < samples.size(); ++i) {
            const std::size_t at = WavHeader::bytes + 2 * (i * header.channels + channel);
            demand(at + 1 < size);
            demand(static_cast<std::uint16_t>(samples[i]) == (data[at] | data[at + 1] << 8));
        }
    }
    demand(held == total && wave->samples(wave->channels()).empty());
    const auto first = wave->samples(0);
    demand(wave->isEmpty() || (wave->minimum() == *std::min_element(first.begin(), first.end()) &&
                               wave->maximum() == *std::max_element(first.begin(), first.end())));
    return 0;
}
