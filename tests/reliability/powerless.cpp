#include "tests/reliability/powerless.h"

#include <QDir>
#include <QFile>
#include <QProcess>

namespace {

constexpr qint64 Megabytes = 64;

bool Runs(const QString& program, const QStringList& arguments) {
    return QProcess::execute(program, arguments) == 0;
}

} // namespace

PowerlessDisk::PowerlessDisk(const QString& folder)
    : m_path(folder + "/disk")
    , m_image(folder + "/image") {
    QFile image(m_image);
    if (!QDir().mkpath(m_path) || !image.open(QIODevice::WriteOnly) ||
        !image.resize(Megabytes * 1024 * 1024))
        return;
    m_mounted = Runs("mkfs.ext4", {"-q", "-F", m_image}) && Mount(m_image);
}

PowerlessDisk::~PowerlessDisk() {
    Unmount();
}

void PowerlessDisk::Flush() const {
    Runs("sync", {"-f", m_path});
}

bool PowerlessDisk::CutPower() {
    const QString found = m_image + ".found";
    // While it is still mounted: unmounting writes what the cache holds.
    if (!QFile::copy(m_image, found))
        return false;
    Unmount();
    return Mount(found);
}

bool PowerlessDisk::Mount(const QString& image) {
    m_mounted =
        Runs("mount", {"-o", "loop,data=writeback,noauto_da_alloc,commit=300", image, m_path});
    return m_mounted;
}

void PowerlessDisk::Unmount() {
    if (m_mounted)
        Runs("umount", {m_path});
    m_mounted = false;
}
