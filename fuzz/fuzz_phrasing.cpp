// The phrasing file's reader: whatever it accepts is valid, and survives being written and read again.

#include "phrasing/managephrasing.h"
#include "phrasing/phrasingfile.h"
#include "phrasing/wavesegments.h"
#include "state/pathfile.h"

#include "fuzzfile.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const FuzzFile folder; // without scratch tools
    static const bool once = (useDataFolder(folder.folder()), true);
    demand(once);

    const QByteArray content(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const auto phrasing = parsePhrasing(content, QStringLiteral("input.grp"));
    if (phrasing == nullptr) {
        return 0;
    }
    const QPhrasingList& areas = phrasing->listPhrasing();
    demand(phrasing->isValid());
    demand(phrasing->nextFreeColor().isValid());
    demand(waveSegments(areas, 48000).size() == static_cast<std::size_t>(areas.size()));
    for (const QPhrasingPtr& area : areas) {
        int index = -1;
        const QPhrasing* found = phrasing->areaAt(area->angleStart(), index);
        // In an area that runs forwards lies its start, and in no other one.
        demand(area->size() < 0.0 || found == area.get());
    }

    const QString text = phrasingText(areas, phrasing->name());
    const auto again = parsePhrasing(text.toUtf8(), phrasing->path());
    demand(again != nullptr && again->name() == phrasing->name());
    demand(again->listPhrasing().size() == areas.size());
    for (qsizetype i = 0; i < areas.size(); ++i) {
        const QPhrasing& area = *again->listPhrasing()[i];
        demand(area.label() == areas[i]->label());
        demand(area.angleStart() == areas[i]->angleStart() && area.angleEnd() == areas[i]->angleEnd());
        demand(!areas[i]->color().isValid() || area.color() == areas[i]->color());
    }
    demand(phrasingText(again->listPhrasing(), again->name()) == text);
    return 0;
}
