// What the unpacking process may still do once it has opened what it needs. Used by its main function alone.
#pragma once

namespace pintle {

/// Bounds memory, descriptors and the number of processes, and leaves no core file.
void limitResources();

/// From here on only what lies below the current folder can be read, made or removed, and no program can be
/// started. Kernels that cannot hold a process to this leave it as it is.
void confineToCurrentFolder();

}  // namespace pintle
