#include "mainwindow/namedfiles.h"

#include "base/runtimeerror.h"
#include "formats/encoding.h"
#include "formats/format.h"
#include "platform/paths.h"

#include <QFileInfo>
#include <QObject>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <string_view>

namespace {

/// A film's beginning holds a NUL long before that.
constexpr std::size_t Beginning = 65536;
/// More would make a message that nobody reads.
constexpr qsizetype MostNames = 4;

bool IsText(std::string_view bytes) {
    const bool marked = bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF");
    return marked || bytes.find('\0') == std::string_view::npos;
}

std::string Decoded(std::string_view bytes) {
    FileBytes copy;
    copy.size = bytes.size();
    copy.data = std::make_unique_for_overwrite<char[]>(copy.size);
    std::memcpy(copy.data.get(), bytes.data(), copy.size);
    return std::string(DecodedText(std::move(copy), {}).Text());
}

bool IsFile(const std::filesystem::path& file) {
    std::error_code none;
    return std::filesystem::is_regular_file(file, none);
}

bool HoldsSubtitles(const QString& name) {
    const bool named = FormatByName(name.toStdString()) != nullptr;
    const std::filesystem::path file = PathOf(name);
    std::ifstream opened;
    if (IsFile(file))
        opened.open(file, std::ios::binary);
    if (!opened.is_open())
        return named;
    std::string bytes(Beginning, '\0');
    opened.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    bytes.resize(static_cast<std::size_t>(opened.gcount()));
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
        else if (place != file)
            named.others << file;
    }
    named.others.removeDuplicates();
    return named;
}

QString LeftOutText(const QStringList& others) {
    if (others.isEmpty())
        return {};
    QStringList names;
    for (const QString& other : others.first(qMin(others.size(), MostNames)))
        names << QObject::tr("“%1”").arg(QFileInfo(other).fileName());
    QString last = names.constLast();
    if (others.size() > MostNames)
        last = QObject::tr("%1 more").arg(others.size() - MostNames);
    else
        names.removeLast();
    const QString all = names.isEmpty()
                            ? last
                            : QObject::tr("%1 and %2").arg(names.join(QLatin1String(", ")), last);
    return QObject::tr("Only one film and one subtitle file are opened at a time: %1 %2 left out.")
        .arg(all, others.size() == 1 ? QObject::tr("was") : QObject::tr("were"));
}

QString SubtitlesBeside(const QString& media) {
    for (const Format& format : Formats()) {
        for (const std::string& extension : format.extensions) {
            const QString name = NameOf(PathOf(media).replace_extension(extension));
            if (IsFile(PathOf(name)) && HoldsSubtitles(name))
                return name;
        }
    }
    return {};
}
