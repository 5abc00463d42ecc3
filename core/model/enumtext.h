#pragma once
// Between the value of a registered enumeration and the text that settings and files keep.

#include <QMetaEnum>
#include <QString>

/// The key of `value`, e.g. "traktor_sideA"; empty for a value without a key.
template <typename Enum> QString enumText(Enum value) {
    return QString::fromLatin1(QMetaEnum::fromType<Enum>().valueToKey(static_cast<int>(value)));
}

/// The value whose key is `text`, or `fallback`.
template <typename Enum> Enum enumValue(const QString& text, Enum fallback) {
    bool found = false;
    const int value = QMetaEnum::fromType<Enum>().keyToValue(text.toLatin1().constData(), &found);
    return found ? static_cast<Enum>(value) : fallback;
}
