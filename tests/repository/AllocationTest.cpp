// Memory that runs out while a document is read: std::bad_alloc reaches the caller, nothing leaks,
// and the next document is read.
#include <gtest/gtest.h>

#include <cstdlib>
#include <new>
#include <pugixml.hpp>
#include <string>

#include "repository/ModelDump.h"
#include "repository/ModelReader.h"

namespace {

// The allocation that fails, counted down; nothing fails below zero.
thread_local long failing = -1;

void* allocate(std::size_t size) {
    if (failing >= 0 && failing-- == 0) {
        return nullptr;
    }
    return std::malloc(size == 0 ? 1 : size);
}

}  // namespace

// Replaced for the whole test program; outside these tests nothing fails.
void* operator new(std::size_t size) {
    void* const memory = allocate(size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}
void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
    return allocate(size);
}
[[gnu::noinline]] void operator delete(void* memory) noexcept { std::free(memory); }
[[gnu::noinline]] void operator delete(void* memory, std::size_t /*size*/) noexcept {
    std::free(memory);
}

namespace {

const char* const documents[] = {
    R"(<x:XMI xmlns:x="http://www.omg.org/XMI"><P x:id="p"><c x:id="c" n="1" r="d c f#x">
        <t>1</t><t>2</t></c><c x:id="d" r="c" s="//@c.1"/><c n="3"><l href="#d"/></c></P></x:XMI>)",
    R"({"objects":[{"id":"a","class":"A","attributes":{"x":1.5},"associations":{"y":["a"]}}]})",
    "<?xml version='1.0' encoding='ISO-8859-1'?><a n='\xE4'/>"};

TEST(Allocation, EveryFailureReachesTheCaller) {
    pugi::set_memory_management_functions(allocate, std::free);
    for (const char* const document : documents) {
        const std::string expected = dump(*readModelText(document, "doc"));
        long failures = 0;
        for (bool isRead = false; !isRead; ++failures) {
            failing = failures;
            try {
                const auto model = readModelText(document, "doc");
                isRead = failing >= 0;
                failing = -1;
                EXPECT_EQ(dump(*model), expected);
            } catch (const std::bad_alloc&) {
                failing = -1;
            }
        }
        EXPECT_GT(failures, 10);
    }
    pugi::set_memory_management_functions(std::malloc, std::free);
}

}  // namespace
