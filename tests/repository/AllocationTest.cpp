// Memory that runs out while a document is read: std::bad_alloc reaches the caller, nothing leaks,
// and the next document is read.
#include <gtest/gtest.h>

#include <cstdlib>
#include <new>
#include <pugixml.hpp>
#include <string>

#include "repository/ModelDump.h"
#include "repository/ModelReader.h"
#include "support/AllocationCounter.h"

namespace {

const char* const documents[] = {
    R"(<x:XMI xmlns:x="http://www.omg.org/XMI"><P x:id="p"><c x:id="c" n="1" r="d c f#x">
        <t>1</t><t>2</t></c><c x:id="d" r="c" s="//@c.1"/><c n="3"><l href="#d"/></c></P></x:XMI>)",
    R"({"objects":[{"id":"a","class":"A","attributes":{"x":1.5},"associations":{"y":["a"]}}]})",
    "<?xml version='1.0' encoding='ISO-8859-1'?><a n='\xE4'/>"};

TEST(Allocation, EveryFailureReachesTheCaller) {
    pugi::set_memory_management_functions(AllocationCounter::allocate,
                                          AllocationCounter::deallocate);
    for (const char* const document : documents) {
        const std::string expected = dump(*readModelText(document, "doc"));
        for (const bool forGood : {false, true}) {
            bool hasFailed = true;
            for (long number = 0; hasFailed; ++number) {
                const std::ptrdiff_t before = AllocationCounter::live();
                try {
                    const FailingAllocation failing(number, forGood);
                    const auto model = readModelText(document, "doc");
                    hasFailed = failing.hasFailed();  // one without which sorting does
                } catch (const std::bad_alloc&) {
                }
                ASSERT_EQ(AllocationCounter::live(), before) << document << " at " << number;
            }
        }
        EXPECT_EQ(dump(*readModelText(document, "doc")), expected);
    }
    pugi::set_memory_management_functions(std::malloc, std::free);
}

}  // namespace
