#include "app/namedfiles.h"

#include "base/runtimeerror.h"
#include "formats/encoding.h"
#include "formats/format.h"

#include <QFile>
#include <QFileInfo>

#include <cstring>
#include <memory>

namespace {

/// A film's beginning holds a NUL long before that.
constexpr qint64 Beginning = 65536;

bool IsText(const QByteArray& bytes) {
    const bool marked = bytes.startsWith("\xFF\xFE") || bytes.startsWith("\xFE\xFF");
    return marked || !bytes.contains('\0');
}

std::string Decoded(const QByteArray& bytes) {
    FileBytes copy;
    copy.size = static_cast<std::size_t>(bytes.size());
    copy.data = std::make_unique_for_overwrite<char[]>(copy.size);
    std::memcpy(copy.data.get(), bytes.constData(), copy.size);
    return std::string(DecodedText(std::move(copy), {}).Text());
}

bool HoldsSubtitles(const QString& file) {
    const bool named = FormatByName(file.toStdString()) != nullptr;
    QFile opened(file);
    if (!QFileInfo(file).isFile() || !opened.open(QIODevice::ReadOnly))
        return named;
    const QByteArray bytes = opened.read(Beginning);
    if (!IsText(bytes))
        return false;
    try {
        return named || FormatOfFile({}, Decoded(bytes)) != nullptr;
    } catch (const RuntimeError&) {
        // It holds nothing.
        return named;
    }
}

} // namespace

NamedFiles TellApart(const QStringList& files) {
    NamedFiles named;
    for (const QString& file : files) {
        QString& place = HoldsSubtitles(file) ? named.subtitles : named.media;
        if (place.isEmpty())
            place = file;
        else
            named.others << file;
    }
    return named;
}

QString SubtitlesBeside(const QString& media) {
    const QFileInfo film(media);
    for (const Format& format : Formats()) {
        for (const std::string& extension : format.extensions) {
            const QString name =
                film.path() + '/' + film.completeBaseName() + QString::fromStdString(extension);
            if (QFileInfo(name).isFile() && HoldsSubtitles(name))
                return name;
        }
    }
    return {};
}
