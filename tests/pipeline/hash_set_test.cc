// Hash sets: the visiting order that output files follow, shadowing, and absence read as the default.
#include "pipeline/hash_set.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <list>
#include <string>
#include <utility>
#include <vector>

namespace {

std::vector<std::string> Keys(const NameSet_tmpl<int>& set) {
  std::vector<std::string> keys;
  for (auto* e : set) keys.push_back(e->iKey.CStr() ? e->iKey.CStr() : "");
  return keys;
}

// An independent model of the table: the name hash and multiplicative finish computed in 64-bit
// and long double arithmetic, chains as lists, growth and rehashing as the rules say.
class Model {
 public:
  explicit Model(int buckets) : iChains(buckets) {}
  static int Bucket(const std::string& name, int buckets) {
    int64_t h = 0;
    for (unsigned char byte : name) {
      int64_t c = byte > 127 ? byte - 256 : byte;
      h = (c + 2 * h) & 0xffffffffLL;
    }
    if (h >= (1LL << 31)) h -= 1LL << 32;
    long double x = h * 0.6180339887L;
    long double whole = std::trunc(x) - (x < 0 ? 1 : 0);
    int b = static_cast<int>(buckets * (x - whole));
    return b == buckets ? 0 : b;
  }
  void Insert(const std::string& key, int value) {
    if (iCount > iChains.size() * 0.5) {
      std::vector<std::list<std::pair<std::string, int>>> grown(iChains.size() * 2);
      for (auto& chain : iChains)
        for (auto& entry : chain) grown[Bucket(entry.first, grown.size())].push_front(entry);
      iChains.swap(grown);
    }
    iChains[Bucket(key, iChains.size())].push_front({key, value});
    iCount++;
  }
  void Remove(const std::string& key) {
    auto& chain = iChains[Bucket(key, iChains.size())];
    for (auto it = chain.begin(); it != chain.end(); ++it)
      if (it->first == key) {
        chain.erase(it);
        iCount--;
        return;
      }
  }
  int NumBuckets() const { return static_cast<int>(iChains.size()); }
  // The first match in chain order, or the default.
  int Get(const std::string& key, int def) const {
    for (auto& entry : iChains[Bucket(key, iChains.size())])
      if (entry.first == key) return entry.second;
    return def;
  }
  void Clear() {
    for (auto& chain : iChains) chain.clear();
    iCount = 0;
  }
  std::vector<std::string> Keys() const {
    std::vector<std::string> keys;
    for (auto& chain : iChains)
      for (auto& entry : chain) keys.push_back(entry.first);
    return keys;
  }

 private:
  std::vector<std::list<std::pair<std::string, int>>> iChains;
  size_t iCount = 0;
};

}  // namespace

TEST(NameSet, OrderFollowsHashAndExpansionsByHand) {
  // Buckets worked out by hand: in 4 buckets a 3, b 2, c 0; in 8 a 7, b 4, c 1, ab 3, \xe9 6
  // (a negative hash); in 16 a 15, b 9, c 2, ab 7, \xe9 12, ba 1.
  NameSet_tmpl<int> set(4, -1);
  for (const char* k : {"a", "b", "c"}) set.Insert(Name_sptr(k), 1);
  EXPECT_EQ(set.GetNumBuckets(), 4);
  EXPECT_EQ(Keys(set), (std::vector<std::string>{"c", "b", "a"}));
  set.Insert(Name_sptr("ab"), 1);  // 3 entries > 4 * 0.5: grows to 8 first
  set.Insert(Name_sptr("\xe9"), 1);
  EXPECT_EQ(set.GetNumBuckets(), 8);
  EXPECT_EQ(Keys(set), (std::vector<std::string>{"c", "ab", "b", "\xe9", "a"}));
  set.Insert(Name_sptr("ba"), 1);
  EXPECT_EQ(set.GetNumBuckets(), 16);
  EXPECT_EQ(Keys(set), (std::vector<std::string>{"ba", "c", "ab", "b", "\xe9", "a"}));
}

TEST(NameSet, ExpansionReversesChainsAndCanUncoverAShadowedKey) {
  // "a" and "gene1" share bucket 3 of 4 and bucket 7 of 8.
  NameSet_tmpl<int> set(4, -1);
  set.Insert(Name_sptr("a"), 1);
  set.Insert(Name_sptr("gene1"), 2);
  set.Insert(Name_sptr("x"), 10);
  EXPECT_EQ(set.GetEntry(Name_sptr("x")), 10);
  EXPECT_EQ(Keys(set)[1], "gene1");
  set.Insert(Name_sptr("x"), 20);  // grows first, then shadows
  EXPECT_EQ(set.GetEntry(Name_sptr("x")), 20);
  std::vector<std::string> keys = Keys(set);
  EXPECT_EQ(std::find(keys.begin(), keys.end(), "a") + 1, std::find(keys.begin(), keys.end(), "gene1"));
  // The next growth rehashes x's chain head first, so the older entry ends up in front.
  for (const char* k : {"p", "q"}) set.Insert(Name_sptr(k), 0);
  EXPECT_EQ(set.GetNumBuckets(), 16);
  EXPECT_EQ(set.GetEntry(Name_sptr("x")), 10);
  EXPECT_EQ(set.Remove(Name_sptr("x")), 10);
  EXPECT_EQ(set.GetEntry(Name_sptr("x")), 20);
  EXPECT_EQ(set.Remove(Name_sptr("x")), 20);
  EXPECT_FALSE(set.Exists(Name_sptr("x")));
  EXPECT_EQ(set.Remove(Name_sptr("x")), -1);
}

TEST(NameSet, OrderMatchesModelThroughGrowthShadowingAndRemoval) {
  NameSet_tmpl<int> set(3, -1);
  Model model(3);
  std::vector<std::string> names;
  for (int i = 0; i < 700; i++) {
    // Mixed shapes: systematic gene names, long names whose hash wraps, and high-bit bytes.
    std::string name = i % 3 == 0 ? "Y" + std::to_string(i * 7919) + "C"
                       : i % 3 == 1 ? std::string(40, 'a' + i % 26) + std::to_string(i)
                                    : std::string("\xf1\xe2-") + std::to_string(i);
    names.push_back(name);
    set.Insert(Name_sptr(name.c_str()), i);
    model.Insert(name, i);
    if (i % 5 == 0) {  // shadow an earlier key
      set.Insert(Name_sptr(names[i / 2].c_str()), -i);
      model.Insert(names[i / 2], -i);
    }
    if (i % 7 == 0) {
      set.Remove(Name_sptr(names[i / 3].c_str()));
      model.Remove(names[i / 3]);
    }
  }
  EXPECT_EQ(set.GetNumBuckets(), model.NumBuckets());
  EXPECT_GT(set.GetNumBuckets(), 1000);
  EXPECT_EQ(Keys(set), model.Keys());
}

TEST(NameSet, LookupsAgreeWithAChainWalkUnderShadowingRemovalAndGrowth) {
  // Few distinct names, many repeats: keys shadow each other across many expansions, and
  // removals uncover the older entries in the order the chains hold them.
  std::vector<std::string> pool;
  for (int i = 0; i < 60; i++) pool.push_back(i % 2 ? "probe_" + std::to_string(i) : std::string(i % 7 + 1, 'a' + i % 26));
  NameSet_tmpl<int> set(1, -1);
  Model model(1);
  Random_cl random(99);
  auto pick = [&] { return pool[static_cast<int>(random.SampleUniform() * pool.size())]; };
  for (int step = 0; step < 20000; step++) {
    double op = random.SampleUniform();
    std::string key = pick();
    if (op < 0.6) {
      set.Insert(Name_sptr(key.c_str()), step);
      model.Insert(key, step);
    } else if (op < 0.995) {
      ASSERT_EQ(set.Remove(Name_sptr(key.c_str())), model.Get(key, -1)) << "step " << step;
      model.Remove(key);
    } else {
      set.RemoveAll();
      model.Clear();
    }
    if (step % 50 == 0)
      for (const std::string& k : pool) {
        ASSERT_EQ(set.GetEntry(Name_sptr(k.c_str())), model.Get(k, -1)) << "step " << step << " key " << k;
        ASSERT_EQ(set.GetEntry(k.c_str()), model.Get(k, -1));
      }
  }
  EXPECT_EQ(Keys(set), model.Keys());
}

TEST(NameSet, EmptyAndNullNamesAreDistinctKeys) {
  NameSet_tmpl<int> set(4, -1);
  set.Insert(Name_sptr(""), 1);  // stored with a null text
  set.Insert(Name_sptr("abc")->SubString(0, -1), 2);  // an empty but non-null text
  set.Insert(Name_sptr(), 3);
  EXPECT_EQ(set.GetEntry(Name_sptr("")), 1);
  EXPECT_EQ(set.GetEntry(Name_sptr("x")->SubString(1, 0)), 2);
  EXPECT_EQ(set.GetEntry(Name_sptr()), 3);
  EXPECT_EQ(set.GetEntry(static_cast<const char*>(nullptr)), 1);
  EXPECT_EQ(set.GetEntry(""), 2);
  EXPECT_EQ(set.Remove(Name_sptr()), 3);
  EXPECT_EQ(set.GetEntry(Name_sptr()), -1);
  EXPECT_EQ(set.GetEntry(Name_sptr("")), 1);
}

TEST(NameSet, DefaultValueReadsAsAbsent) {
  NameSet_tmpl<int> set(8, -1);
  set.Insert(Name_sptr("stored"), -1);
  EXPECT_EQ(set.GetEntry(Name_sptr("stored")), set.GetEntry(Name_sptr("absent")));
  EXPECT_TRUE(set.Exists(Name_sptr("stored")));
  EXPECT_FALSE(set.Exists(Name_sptr("absent")));
  EXPECT_EQ(set.GetEntry("stored"), -1);
  EXPECT_TRUE(set.Exists("stored"));
  // A reference to the default is handed out for absent keys; writing through it changes the
  // default itself.
  EXPECT_EQ(&set.GetEntry(Name_sptr("absent")), &set.GetDefault());
}

TEST(NameSet, IncrementAddsOrInsertsDefaultPlusDelta) {
  NameSet_tmpl<int> set(4, 10);
  EXPECT_EQ(set.Increment(Name_sptr("k"), 3), 0);
  EXPECT_EQ(set.GetEntry(Name_sptr("k")), 13);
  EXPECT_EQ(set.Increment(Name_sptr("k"), 3), 1);
  EXPECT_EQ(set.GetEntry(Name_sptr("k")), 16);
  EXPECT_EQ(set.GetSize(), 1);
}

TEST(NameSet, ReduceKeepsOnlyListedKeysWithOwnValues) {
  NameSet_tmpl<int> set(4, -1);
  NameSet_tmpl<int> keep(4, 0);
  for (int i = 0; i < 20; i++) set.Insert(Name_sptr(("g" + std::to_string(i)).c_str()), i);
  for (int i = 0; i < 20; i += 3) keep.Insert(Name_sptr(("g" + std::to_string(i)).c_str()), 100);
  keep.Insert(Name_sptr("other"), 100);
  NameSet_tmpl<int>* reduced = set.Reduce(keep);
  EXPECT_EQ(reduced->GetSize(), 7);
  EXPECT_EQ(reduced->GetEntry(Name_sptr("g9")), 9);
  EXPECT_FALSE(reduced->Exists(Name_sptr("g1")));
  EXPECT_FALSE(reduced->Exists(Name_sptr("other")));
  delete reduced;
}

TEST(NameSet, RemoveAllKeepsBucketsAndCopyReinsertsInVisitingOrder) {
  NameSet_tmpl<int> set(2, -1);
  for (const char* k : {"a", "b", "c", "d"}) set.Insert(Name_sptr(k), 1);
  int buckets = set.GetNumBuckets();
  NameSet_tmpl<int> copy(64, -1);
  copy.CopyMyValues(set);
  EXPECT_EQ(copy.GetSize(), 4);
  set.RemoveAll();
  EXPECT_EQ(set.GetSize(), 0);
  EXPECT_EQ(set.GetNumBuckets(), buckets);
  EXPECT_TRUE(Keys(set).empty());
  EXPECT_EQ(copy.GetEntry(Name_sptr("d")), 1);
}

TEST(HashSets, NumericKeysUseTheirOwnMultipliers) {
  // -3 * 0.618... = -1.854...: floor -2, fraction 0.1458..., bucket 1 of 10.
  IntSet_tmpl<int> ints(10, -1);
  ints.Insert(-3, 7);
  EXPECT_EQ(ints.GetHashValue(-3), 1);
  EXPECT_EQ(ints.GetEntry(-3), 7);
  // 0.5 * 1000.618... = 500.309...: bucket 3 of 10.
  DoubleSet_tmpl<int> doubles(10, -1);
  EXPECT_EQ(doubles.GetHashValue(0.5), 3);
  Vector_tmpl<int> v1, v2, v3;
  for (int x : {1, 2, 3}) v1.AddLast(x);
  for (int x : {3, 2, 1}) v2.AddLast(x);
  for (int x : {1, 2, 3}) v3.AddLast(x);
  IntVecSet_tmpl<int> vecs(10, -1);
  vecs.Insert(&v1, 1);
  EXPECT_EQ(vecs.GetHashValue(&v1), vecs.GetHashValue(&v2));  // same sum
  EXPECT_FALSE(vecs.Exists(&v2));
  EXPECT_EQ(vecs.GetEntry(&v3), 1);
}

TEST(VectorNameHash, VectorKeepsEveryValueWhileTheSetShadows) {
  VectorNameHash_tmpl<int> hash(2, -1, 4);
  hash.AddLast(Name_sptr("a"), 1);
  hash.AddLast(Name_sptr("b"), 2);
  hash.AddLast(Name_sptr("a"), 3);
  EXPECT_EQ(hash.GetSize(), 3);
  EXPECT_EQ(hash[0], 1);
  EXPECT_EQ(hash[2], 3);
  EXPECT_EQ(hash.GetEntry(Name_sptr("a")), 3);
  EXPECT_EQ(hash.GetSet().Remove(Name_sptr("a")), 3);
  EXPECT_EQ(hash.GetEntry(Name_sptr("a")), 1);
  EXPECT_EQ(hash.GetEntry(Name_sptr("z")), -1);
}
