#pragma once

#include <atomic>
#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

/// A share with a few files to be read, mounted by FUSE, that can stop to answer: from then
/// on whoever asks it for anything waits until it is gone. Takes root and /dev/fuse.
class DyingShare {
  public:
    /// The folder must exist and be empty. `files`: their names and bytes.
    DyingShare(std::string folder, std::map<std::string, std::string> files);
    ~DyingShare();
    DyingShare(const DyingShare&) = delete;
    DyingShare& operator=(const DyingShare&) = delete;

    bool Mounted() const { return m_mounted; }
    void Die();

  private:
    struct File {
        std::string name;
        std::string bytes;
    };

    void Serve();
    void Answer(const char* request) const;
    void Reply(std::uint64_t unique, int error, const void* bytes, std::size_t size) const;
    template <typename REPLY>
    void Reply(std::uint64_t unique, const REPLY& reply) const;
    void LookUp(std::uint64_t unique, const std::string& name) const;
    void Read(std::uint64_t unique, std::uint64_t node, const char* argument) const;
    void List(std::uint64_t unique, const char* argument) const;
    struct fuse_attr Attributes(std::uint64_t node) const;
    const File* At(std::uint64_t node) const;

    const std::string m_folder;
    std::vector<File> m_files;
    int m_device = -1;
    bool m_mounted = false;
    std::mutex m_mutex;
    bool m_dead = false;
    std::atomic<bool> m_ending = false;
    std::thread m_thread;
};
