// What the host prints, and its heap.
#pragma once

#include <cstddef>

void hrtPuts(const char* text); // as it stands: no line feed is added
[[gnu::format(printf, 1, 2)]] void hrtPrintf(const char* format, ...);

void* hrtMalloc(std::size_t size);
void hrtFree(void* block);
