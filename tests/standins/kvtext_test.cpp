// The text library stand-in: counted allocations, failure injection, bounded strings, comparison.
#include "kvtest.h"

namespace {

using kvtest::KvTest;
class KvTextTest : public KvTest {};

TEST_F(KvTextTest, AllocationsAreCountedUntilFreed) {
    int before = KvText_LiveAllocations();
    void* a = GetMemory(10);
    void* b = Mres(20);
    EXPECT_EQ(before + 2, KvText_LiveAllocations());
    for (int i = 0; i < 20; ++i) EXPECT_EQ(0, static_cast<char*>(b)[i]);
    b = ReallocMemory(b, 4000);
    ASSERT_NE(nullptr, b);
    EXPECT_EQ(before + 2, KvText_LiveAllocations());
    FreeMemory(a);
    FreeMemory(b);
    FreeMemory(nullptr);
    EXPECT_EQ(before, KvText_LiveAllocations());
}

TEST_F(KvTextTest, InjectedFailureHitsExactlyTheNthAllocation) {
    KvText_FailAllocation(3);
    void* first = GetMemory(4);
    void* second = Mres(4);
    void* third = GetMemory(4);
    void* fourth = GetMemory(4);
    EXPECT_NE(nullptr, first);
    EXPECT_NE(nullptr, second);
    EXPECT_EQ(nullptr, third);
    EXPECT_NE(nullptr, fourth);
    FreeMemory(first);
    FreeMemory(second);
    FreeMemory(fourth);
}

TEST_F(KvTextTest, FailedReallocKeepsTheOldBlock) {
    auto* block = static_cast<char*>(GetMemory(4));
    memcpy(block, "abc", 4);
    KvText_FailAllocation(1);
    EXPECT_EQ(nullptr, ReallocMemory(block, 100));
    EXPECT_STREQ("abc", block);
    FreeMemory(block);
}

TEST_F(KvTextTest, AddMemoryAppends) {
    int a = 1, b = 2;
    auto* block = static_cast<int*>(AddMemory(nullptr, 0, &a, sizeof(a)));
    block = static_cast<int*>(AddMemory(block, sizeof(int), &b, sizeof(b)));
    ASSERT_NE(nullptr, block);
    EXPECT_EQ(1, block[0]);
    EXPECT_EQ(2, block[1]);
    KvText_FailAllocation(1);
    EXPECT_EQ(nullptr, AddMemory(block, 2 * sizeof(int), &a, sizeof(a)));
    EXPECT_EQ(2, block[1]);
    FreeMemory(block);
}

TEST_F(KvTextTest, AddMemoryMaxGrowsInSteps) {
    int used = 0, capacity = 0;
    char chunk[300] = {};
    void* block = nullptr;
    for (int i = 0; i < 4; ++i) {
        chunk[0] = static_cast<char>(i);
        block = AddMemoryMax(block, &used, &capacity, chunk, sizeof(chunk), 1024);
        ASSERT_NE(nullptr, block);
    }
    EXPECT_EQ(1200, used);
    EXPECT_EQ(2048, capacity);
    EXPECT_EQ(3, static_cast<char*>(block)[900]);
    // A failed growth leaves everything as it was.
    char big[1000] = {};
    KvText_FailAllocation(1);
    EXPECT_EQ(nullptr, AddMemoryMax(block, &used, &capacity, big, sizeof(big), 1024));
    EXPECT_EQ(1200, used);
    EXPECT_EQ(2048, capacity);
    FreeMemory(block);
}

TEST_F(KvTextTest, BoundedCopyAndConcatenationAlwaysTerminate) {
    wchar_t buffer[6];
    kv_strcpy(buffer, L"abcdefgh", 6);
    EXPECT_STREQ(L"abcde", buffer);
    kv_strcpy(buffer, L"ab", 6);
    kv_strcat(buffer, L"cdefg", 6);
    EXPECT_STREQ(L"abcde", buffer);
    kv_strcpy(buffer, nullptr, 6);
    EXPECT_STREQ(L"", buffer);
    wchar_t text[] = L"&Save && go";
    EXPECT_EQ(3, StringRemoveChar(text, L'&'));
    EXPECT_STREQ(L"Save  go", text);
}

TEST_F(KvTextTest, ComparisonsIgnoreCaseByDefault) {
    EXPECT_EQ(0, StringCmpEx(0, L"apple", L"APPLE", 0));
    EXPECT_LT(StringCmpEx(0, L"apple", L"banana", 0), 0);
    EXPECT_GT(StringCmpEx(0, L"b", L"A", 0), 0);
    EXPECT_EQ(0, StringCmpLenEx(0, L"Mueller", L"muell", 0, 5));
    EXPECT_EQ(0, kv_CompareString(0, 4, L"Berlin", 1, L"b", 1));
    EXPECT_NE(0, kv_CompareString(0, 0, L"Berlin", 1, L"b", 1));
}

TEST_F(KvTextTest, GlobalSessionHasTheDocumentedLayout) {
    KVSESSION* session = GlobalSession();
    ASSERT_NE(nullptr, session);
    EXPECT_EQ(sizeof(KVSESSION), session->size);
    const BYTE* bytes = reinterpret_cast<const BYTE*>(session);
    session->language = 0x12345678;
    session->display = 0xA5;
    DWORD language;
    memcpy(&language, bytes + 71, 4);
    EXPECT_EQ(0x12345678u, language);
    EXPECT_EQ(0xA5, bytes[1247]);
    session->language = 0;
    session->display = 0;
}

}  // namespace
