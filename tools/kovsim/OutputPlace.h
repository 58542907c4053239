// OutputPlace: a place beside a target in which an output is made, so that the target appears whole
// or not at all.
//
// The place is a folder `.NAME.kovsim-XXXXXX` in the target's folder. Its maker holds a lock on it
// for as long as it lives, so that whoever finds one without a holder knows that its maker was
// killed, and removes it. Publish() renames what was made to the target, without replacing
// anything. A place that ends unpublished is removed with all its content, on exit() too.
//
//     made --Publish()--> published --destroy--> gone
//       \--destroy, or exit of the process--> removed
#pragma once

#include <string>

namespace kov::tool {

class OutputPlace {
  public:
    /// Refuses a target that exists, whose folder is missing or not writable, or that would lie
    /// inside a document; removes what killed runs left for this target; makes and locks the place.
    /// Throws Failure.
    explicit OutputPlace(std::string const& target);
    ~OutputPlace();
    OutputPlace(OutputPlace const&) = delete;
    OutputPlace& operator=(OutputPlace const&) = delete;

    /// Where to make the output; nothing exists there yet.
    std::string const& Path() const { return m_path; }
    std::string const& Target() const { return m_target; }

    /// Renames the output to the target and makes the renaming lasting. Throws Failure if the
    /// target exists by now.
    void Publish();

  private:
    void RemoveLeftovers() const;
    void MakeLockedFolder();
    void Remove() noexcept;

    std::string m_target;
    std::string m_parent;  ///< folder of the target
    std::string m_name;    ///< last part of the target
    std::string m_folder;  ///< the place; empty once it is gone
    std::string m_path;
    int m_lock = -1;
};

/// Makes the names in a folder lasting. Throws Failure.
void SyncFolder(std::string const& path);

}  // namespace kov::tool
