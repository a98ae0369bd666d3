// Arbitrary pages: the functions of the component keep their promises, and give the same results again.

#include "fixtures/grounding.h"
#include "fuzz/decoded_page.h"
#include "fuzz/page_promises.h"
#include "fuzz/promise.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::DecodedPage page = fuzz::decode_page(data, size);
    const wiki::scope::ScopeFacts facts = fuzz::load(page);
    fuzz::check_counting(facts, page.numbers);
    fuzz::check_ranking(facts, page.numbers);
    fuzz::check_values(facts, page.missing);
    fuzz::check_rendering(facts, page.missing);
    fuzz::promise(grounding_of(facts) == grounding_of(facts), "two calls give the same");
    return 0;
}
