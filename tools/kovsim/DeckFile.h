// Where decks come from: files of the system, or memory for tests and fuzzing; and the C stream
// that the keyword parser wants over either of them.
#pragma once

#include <cstdint>
#include <cstdio>
#include <map>
#include <memory>
#include <string>

namespace kov::tool {

/// One open file, read from front to back.
class DeckFile {
  public:
    virtual ~DeckFile() = default;
    /// Reads up to `size` bytes; 0 at the end. Throws Failure, without the file's name.
    virtual std::size_t Read(char* to, std::size_t size) = 0;
    /// Goes on at byte `offset`. Throws Failure for a pipe and its like.
    virtual void Seek(std::int64_t offset) = 0;
    /// Size in bytes; -1 if it has none.
    virtual std::int64_t Size() const = 0;
};

/// What files there are.
class DeckFiles {
  public:
    virtual ~DeckFiles() = default;
    /// Opens the file; throws Failure, without the file's name, if there is none that can be read.
    virtual std::unique_ptr<DeckFile> Open(std::string const& path) = 0;
    /// A text that is the same for two paths exactly if they lead to one file; throws as Open.
    virtual std::string Identity(std::string const& path) = 0;
};

/// The files of the system.
class SystemFiles : public DeckFiles {
  public:
    std::unique_ptr<DeckFile> Open(std::string const& path) override;
    std::string Identity(std::string const& path) override;
};

/// Texts by name.
class MemoryFiles : public DeckFiles {
  public:
    std::map<std::string, std::string> texts;

    std::unique_ptr<DeckFile> Open(std::string const& path) override;
    std::string Identity(std::string const& path) override;
};

/// A C stream over a deck file, without the byte order mark of UTF-8. The parser cannot tell a read
/// error from the end of the stream, and takes a zero byte for the end of a line, so that both are
/// watched for here: the stream ends there, and Fault() says why.
class DeckStream {
  public:
    DeckStream(std::unique_ptr<DeckFile> file, std::int64_t offset);
    ~DeckStream();
    DeckStream(DeckStream const&) = delete;
    DeckStream& operator=(DeckStream const&) = delete;

    FILE* Stream() const { return m_stream; }
    /// What went wrong, for a message; empty if nothing did.
    std::string const& Fault() const { return m_fault; }
    std::int64_t Size() const { return m_file->Size(); }
    /// The bytes of the byte order mark that stood at the start of the file; the stream begins
    /// behind it.
    std::int64_t Skipped() const { return m_skipped; }

  private:
    void SkipByteOrderMark();
    static ssize_t ReadCookie(void* cookie, char* to, std::size_t size);

    std::unique_ptr<DeckFile> m_file;
    std::unique_ptr<char[]> m_buffer;
    FILE* m_stream = nullptr;
    std::string m_fault;
    std::int64_t m_skipped = 0;
};

}  // namespace kov::tool
