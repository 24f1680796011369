#include "Tamo/XML/NamespaceSupport.h"
#include "Tamo/Bugcheck.h"
#include "Trace.h"
#include <gtest/gtest.h>
#include <map>
#include <random>

using namespace Tamo::XML;

TEST(NamespaceSupport, KeepsXmlBoundAndUndeclared) {
    NamespaceSupport scope;
    EXPECT_FALSE(scope.declarePrefix("xml", "u"));
    EXPECT_FALSE(scope.undeclarePrefix("xml"));
    EXPECT_EQ(scope.getURI("xml"), NamespaceSupport::XML_NAMESPACE);
    EXPECT_EQ(scope.getPrefix(NamespaceSupport::XML_NAMESPACE), "xml");
    scope.declarePrefix("p", "u");
    scope.reset();
    EXPECT_EQ(scope.getURI("p"), "");
    EXPECT_TRUE(scope.getDeclaredPrefixes().empty());
    EXPECT_THROW(scope.popContext(), Tamo::AssertionViolationException);
}

/// The same operations on contexts that are plain maps; few and many prefixes, so that scans and index are
/// met.
TEST(NamespaceSupport, AgreesWithPlainMapsOverRandomOperations) {
    using Context = std::map<std::string, std::string>;
    for (const unsigned int names : {3u, 12u, 200u}) {
        std::mt19937 random(names);
        NamespaceSupport scope;
        std::vector<Context> model(1);
        std::map<Tamo::UInt64, std::map<std::string, std::string>>
            states; // the bindings that a state stood for
        int again = 0;
        const auto prefix = [&] { return random() % 5 ? numbered("p", random() % names) : std::string(); };
        const auto uri = [&] { return numbered("u", random() % (names / 2 + 1)); };
        for (int step = 0; step < 20000; ++step) {
            const std::string p = prefix();
            const unsigned int action = random() % 16;
            if (action < 8) {
                const std::string u = uri();
                scope.declarePrefix(p, u);
                model.back()[p] = u;
            } else if (action < 12) {
                ASSERT_EQ(scope.undeclarePrefix(p), model.back().erase(p) == 1);
            } else if (action < 14 && model.size() < 60) {
                scope.pushContext();
                model.emplace_back();
            } else if (action >= 14 && model.size() > 1) {
                scope.popContext();
                model.pop_back();
            }

            std::map<std::string, std::pair<std::string, std::size_t>> inForce; // prefix: name and depth
            for (std::size_t depth = 0; depth < model.size(); ++depth) {
                for (const auto& [bound, name] : model[depth]) {
                    inForce[bound] = {name, depth};
                }
            }
            std::map<std::string, std::string> bindings;
            for (const auto& [bound, where] : inForce) {
                bindings[bound] = where.first;
            }
            const auto [state, isNew] = states.emplace(scope.state(), bindings);
            ASSERT_EQ(state->second, bindings);
            again += isNew ? 0 : 1;
            const std::string asked = prefix();
            ASSERT_EQ(scope.getURI(asked), inForce.contains(asked) ? inForce[asked].first : "");
            const std::string wanted = uri();
            std::size_t innermost = 0;
            bool isMapped = false;
            bool hasPrefix = false;
            for (const auto& [bound, where] : inForce) {
                if (where.first == wanted) {
                    isMapped = true;
                    if (!bound.empty()) {
                        hasPrefix = true;
                        innermost = std::max(innermost, where.second);
                    }
                }
            }
            ASSERT_EQ(scope.isMapped(wanted), isMapped);
            const std::string found = scope.getAttributePrefix(wanted);
            ASSERT_EQ(!found.empty(), hasPrefix);
            if (hasPrefix) {
                ASSERT_EQ(inForce[found], std::make_pair(wanted, innermost));
            }
            const bool isDefault = inForce.contains("") && inForce[""].first == wanted;
            ASSERT_EQ(scope.getPrefix(wanted), isDefault ? "" : found);
            const std::vector<std::string> declared = scope.getDeclaredPrefixes();
            ASSERT_EQ(declared.size(), model.back().size());
            for (const std::string& one : declared) {
                ASSERT_TRUE(model.back().contains(one));
            }
            ASSERT_TRUE(!scope.declaresNothing() || declared.empty());
        }
        EXPECT_GT(again, 5000);
    }
}
