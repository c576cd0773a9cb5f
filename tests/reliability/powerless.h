#pragma once

#include <QString>

/// A disk of its own (an ext4 image behind a loop device) whose power can be cut: what
/// the program did not flush is lost then. Its journal is not written by itself and
/// renames do not flush the data (data=writeback, noauto_da_alloc, commit=300), so that nothing
/// survives by luck. Mounting takes root.
class PowerlessDisk {
  public:
    /// Keeps its images and the mount point in that folder.
    explicit PowerlessDisk(const QString& folder);
    ~PowerlessDisk();
    PowerlessDisk(const PowerlessDisk&) = delete;
    PowerlessDisk& operator=(const PowerlessDisk&) = delete;

    bool Mounted() const { return m_mounted; }
    QString Path() const { return m_path; }

    /// What has been written so far will survive.
    void Flush() const;
    /// Takes the disk as it is behind the system's cache, as it would be found after a
    /// power cut, and mounts that instead. For when whoever wrote on it has ended. False
    /// when that could not be done.
    bool CutPower();

  private:
    bool Mount(const QString& image);
    void Unmount();

    QString m_path;
    QString m_image;
    bool m_mounted = false;
};
