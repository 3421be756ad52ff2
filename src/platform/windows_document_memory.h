// Windows: documents in automation arrays.
#pragma once

struct tagSAFEARRAY;

namespace tolvane {

/// The owner of a document's memory: a one-dimensional byte array, locked as long as it is looked at. Who is the only
/// one to hold a document may find it by std::get_deleter and take the array out.
struct OwnedAutomationArray {
  tagSAFEARRAY* array = nullptr;
  /// Destroys the array, unless it was taken.
  void operator()(const void* memory) const noexcept;
};

}  // namespace tolvane
