#include "template/parser/CompoundTemplateSection.h"

#include "PageRun.h"

TEST(TemplateEvaluation, TextWritesUpToItsFirstNulByte)
{
    using namespace std::string_literals;
    EXPECT_EQ(Generated("a\0b<%pageheader%>c"s), "a{pageheader}c");
    CTemplateSectionText text("ab", 2);
    text.AddText("cd", 1);
    CTestIterator iterator;
    CRecordingGenerator generator;
    EXPECT_EQ(text.GenerateToString(iterator, generator), "abc");
    text.Clear();
    EXPECT_EQ(text.GenerateToString(iterator, generator), "");
    EXPECT_THROW(text.AddSection("if", nullptr), CTemplateParsingException);
}

TEST(TemplateEvaluation, ACompoundKeepsItsChildrenInOrderUntilCleared)
{
    CCompoundTemplateSection compound;
    compound.AddText("a", 1);
    compound.AddSection("ignored", std::make_unique<CTemplateSectionText>("b", 1));
    compound.AddSection("ignored", nullptr);
    compound.OnEndOfFile("c", 1);
    CTestIterator iterator;
    CRecordingGenerator generator;
    compound.Bind(iterator, generator);
    EXPECT_EQ(compound.GenerateToString(iterator, generator), "abc");
    compound.Clear();
    EXPECT_EQ(compound.GenerateToString(iterator, generator), "");
}
