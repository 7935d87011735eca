// The sample document built into ooxml-dump (samples/sample.docx).
#ifndef OOXML_DUMP_BUNDLED_SAMPLE_H
#define OOXML_DUMP_BUNDLED_SAMPLE_H

#include <cstddef>

extern const unsigned char kBundledSample[];
extern const std::size_t kBundledSampleSize;
extern const char* const kBundledSampleName;

#endif
