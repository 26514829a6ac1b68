// How a program sets up its heap for large work (decoding many bitmaps, rendering, loading a
// large manifest). Blocks up to 32 MiB come from the heap rather than from mappings of their
// own, freed memory stays in the process, and the heap is grown at once by a span advised for
// transparent huge pages, so that what lands there faults in 2 MiB at a time instead of 4 KiB
// (on a virtual machine, first touches of fresh pages are what large work mostly pays for).
// Untouched pages cost nothing. It changes process-wide allocator settings: programs call it,
// the library never does.
#pragma once

#include <cstddef>

namespace iconwright {

/// Grows the heap by at least `bytes` of free space advised for huge pages. Later calls
/// only add space when the earlier ones reserved less. Does nothing where the heap cannot
/// grow (the address space limit, say): allocation goes on as before.
void prepareHeapForLargeWork(std::size_t bytes);

}  // namespace iconwright
