#include "tests/reliability/dyingshare.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <utility>

#include <fcntl.h>
#include <linux/fuse.h>
#include <poll.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

// As much of the kernel's protocol as reading files takes. Nothing may be cached, so that
// every question comes here. It has no flush: for its answer a program that ends would wait
// in the kernel, where nothing can end it.

namespace {

constexpr std::uint64_t Root = 1;
constexpr std::uint64_t FirstFile = 2;
constexpr std::size_t LargestRequest = std::size_t{1} << 17U;
constexpr int PollMilliseconds = 20;

} // namespace

DyingShare::DyingShare(std::string folder, std::map<std::string, std::string> files)
    : m_folder(std::move(folder)) {
    for (auto& [name, bytes] : files)
        m_files.push_back({name, std::move(bytes)});
    m_device = open("/dev/fuse", O_RDWR | O_CLOEXEC);
    if (m_device < 0)
        return;
    const std::string options =
        "fd=" + std::to_string(m_device) + ",rootmode=40000,user_id=0,group_id=0,allow_other";
    m_mounted = mount("share", m_folder.c_str(), "fuse", MS_NOSUID | MS_NODEV | MS_RDONLY,
                      options.c_str()) == 0;
    if (m_mounted)
        m_thread = std::thread([this] { Serve(); });
}

DyingShare::~DyingShare() {
    m_ending = true;
    if (m_thread.joinable())
        m_thread.join();
    if (m_mounted)
        umount2(m_folder.c_str(), MNT_FORCE | MNT_DETACH);
    if (m_device >= 0)
        close(m_device);
}

void DyingShare::Serve() {
    std::vector<char> request(LargestRequest);
    while (!m_ending) {
        pollfd waiting{m_device, POLLIN, 0};
        poll(&waiting, 1, PollMilliseconds);
        const std::lock_guard guard(m_mutex);
        if (m_dead)
            std::this_thread::sleep_for(std::chrono::milliseconds(PollMilliseconds));
        if (m_dead || (waiting.revents & POLLIN) == 0)
            continue;
        const ssize_t size = read(m_device, request.data(), request.size());
        if (size >= static_cast<ssize_t>(sizeof(fuse_in_header)))
            Answer(request.data());
    }
}

// A program whose question was read and not answered could not be ended by anybody.
void DyingShare::Die() {
    const std::lock_guard guard(m_mutex);
    m_dead = true;
}

void DyingShare::Reply(std::uint64_t unique, int error, const void* bytes, std::size_t size) const {
    fuse_out_header header{};
    header.len = static_cast<std::uint32_t>(sizeof header + size);
    header.error = -error;
    header.unique = unique;
    const iovec parts[] = {{&header, sizeof header}, {const_cast<void*>(bytes), size}};
    static_cast<void>(!writev(m_device, parts, size == 0 ? 1 : 2));
}

template <typename REPLY>
void DyingShare::Reply(std::uint64_t unique, const REPLY& reply) const {
    Reply(unique, 0, &reply, sizeof reply);
}

const DyingShare::File* DyingShare::At(std::uint64_t node) const {
    const std::uint64_t number = node - FirstFile;
    return node >= FirstFile && number < m_files.size() ? &m_files[number] : nullptr;
}

fuse_attr DyingShare::Attributes(std::uint64_t node) const {
    fuse_attr attributes{};
    const File* file = At(node);
    attributes.ino = node;
    attributes.mode = file == nullptr ? S_IFDIR | 0755U : S_IFREG | 0644U;
    attributes.size = file == nullptr ? 0 : file->bytes.size();
    attributes.nlink = 1;
    attributes.blksize = 4096;
    return attributes;
}

void DyingShare::LookUp(std::uint64_t unique, const std::string& name) const {
    const auto found = std::find_if(m_files.begin(), m_files.end(),
                                    [&](const File& file) { return file.name == name; });
    if (found == m_files.end())
        return Reply(unique, ENOENT, nullptr, 0);
    fuse_entry_out entry{};
    entry.nodeid = FirstFile + static_cast<std::uint64_t>(found - m_files.begin());
    entry.attr = Attributes(entry.nodeid);
    Reply(unique, entry);
}

void DyingShare::Read(std::uint64_t unique, std::uint64_t node, const char* argument) const {
    fuse_read_in wanted{};
    std::memcpy(&wanted, argument, sizeof wanted);
    const File* file = At(node);
    if (file == nullptr)
        return Reply(unique, EISDIR, nullptr, 0);
    const std::size_t from = std::min<std::size_t>(wanted.offset, file->bytes.size());
    const std::size_t size = std::min<std::size_t>(wanted.size, file->bytes.size() - from);
    Reply(unique, 0, file->bytes.data() + from, size);
}

void DyingShare::List(std::uint64_t unique, const char* argument) const {
    fuse_read_in wanted{};
    std::memcpy(&wanted, argument, sizeof wanted);
    std::string entries;
    for (std::uint64_t number = wanted.offset; number < m_files.size(); ++number) {
        const std::string& name = m_files[number].name;
        fuse_dirent entry{};
        entry.ino = FirstFile + number;
        entry.off = number + 1;
        entry.namelen = static_cast<std::uint32_t>(name.size());
        entry.type = S_IFREG >> 12U;
        std::string bytes(reinterpret_cast<const char*>(&entry), FUSE_NAME_OFFSET);
        bytes += name;
        bytes.resize(FUSE_DIRENT_ALIGN(bytes.size()));
        if (entries.size() + bytes.size() > wanted.size)
            break;
        entries += bytes;
    }
    Reply(unique, 0, entries.data(), entries.size());
}

void DyingShare::Answer(const char* request) const {
    fuse_in_header header{};
    std::memcpy(&header, request, sizeof header);
    const char* const argument = request + sizeof header;
    const std::uint64_t unique = header.unique;
    switch (header.opcode) {
    case FUSE_INIT: {
        fuse_init_out answer{};
        answer.major = FUSE_KERNEL_VERSION;
        answer.minor = 31;
        answer.max_write = 65536;
        return Reply(unique, answer);
    }
    case FUSE_LOOKUP:
        return LookUp(unique, argument);
    case FUSE_GETATTR: {
        fuse_attr_out answer{};
        answer.attr = Attributes(header.nodeid);
        return Reply(unique, answer);
    }
    case FUSE_OPEN:
    case FUSE_OPENDIR: {
        fuse_open_out answer{};
        answer.open_flags = header.opcode == FUSE_OPEN ? FOPEN_DIRECT_IO : 0;
        return Reply(unique, answer);
    }
    case FUSE_READ:
        return Read(unique, header.nodeid, argument);
    case FUSE_READDIR:
        return List(unique, argument);
    case FUSE_STATFS:
        return Reply(unique, fuse_statfs_out{});
    case FUSE_RELEASE:
    case FUSE_RELEASEDIR:
        return Reply(unique, 0, nullptr, 0);
    case FUSE_FORGET:
    case FUSE_BATCH_FORGET:
        return;
    default:
        return Reply(unique, ENOSYS, nullptr, 0);
    }
}
