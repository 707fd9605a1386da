#include "template/sections/BlogProcessor.h"

#include "template/sections/TemplateSection.h"

void CBlogGenerator::Process(CImageIterator& iterator, CContentGenerator& generator, CTemplateSection& body)
{
    body.Generate(iterator, generator, out);
}

void CBlogBinder::Process(CImageIterator& iterator, CContentGenerator& generator, CTemplateSection& body)
{
    body.Bind(iterator, generator);
}
