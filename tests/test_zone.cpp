// Time zones: what is read and refused, and every conversion held against localtime_r and against a
// reader that goes through everything.

#include <sched.h>
#include <sys/auxv.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>

#include "machine_zones.hpp"
#include "reference_zone.hpp"
#include "support.hpp"
#include "tzif.hpp"

static constexpr ZemInt64 kSecond = 1000000000;
static constexpr ZemTime kFirst = INT64_MIN;
static constexpr ZemTime kLast = INT64_MAX;

// An allocator that counts what it gave and did not get back, and can be told to fail.
struct CountingAllocator : ZemAllocator {
    ZemSizeT blocks = 0;
    ZemSizeT bytes = 0;
    ZemSizeT requests = 0;
    bool fails = false;

    CountingAllocator() : ZemAllocator{}
    {
        allocate = [](ZemAllocator* a, ZemSizeT size) -> ZemVoidPtr {
            auto& self = *static_cast<CountingAllocator*>(a);
            self.requests += 1;
            if (self.fails)
                return nullptr;
            self.blocks += 1;
            self.bytes += size;
            return std::malloc(size);
        };
        deallocate = [](ZemAllocator* a, ZemVoidPtr block, ZemSizeT size) {
            auto& self = *static_cast<CountingAllocator*>(a);
            self.blocks -= 1;
            self.bytes -= size;
            std::free(block);
        };
    }
};

// A zone for the length of a scope: none where `construct` refused, with the storage checked.
class Zone {
  public:
    template <class Construct>
    explicit Zone(Construct construct)
    {
        // A failing allocation first: where a zone is made, it is made with one block.
        for (bool fails : {true, false}) {
            allocator_.fails = fails;
            allocator_.requests = 0;
            std::memset(&zone_, 0x5A, sizeof zone_);
            ZemTimeZone before = zone_;
            ZemTimeZone* result = construct(&zone_, &allocator_);
            EXPECT_TRUE(result == nullptr || (!fails && result == &zone_));
            made_ = result != nullptr;
            EXPECT_LE(allocator_.requests, 1U);
            EXPECT_EQ(allocator_.blocks, made_ ? 1U : 0U);
            EXPECT_TRUE(made_ || std::memcmp(&zone_, &before, sizeof zone_) == 0);
            EXPECT_TRUE(!made_ || allocator_.bytes == zone_.size);
        }
    }

    Zone(const Zone&) = delete;

    ~Zone()
    {
        if (made_)
            ZemTimeZoneDestruct(&zone_);
        EXPECT_EQ(allocator_.bytes, 0U);
    }

    explicit operator bool() const
    {
        return made_;
    }

    const ZemTimeZone& operator*() const
    {
        return zone_;
    }

  private:
    CountingAllocator allocator_;
    ZemTimeZone zone_;
    bool made_;
};

static Zone Named(const char* name)
{
    return Zone([=](ZemTimeZone* z, ZemAllocator* a) { return ZemTimeZoneConstruct(z, name, a); });
}

static Zone Local(const char* tz)
{
    SetTz(tz);
    return Zone([](ZemTimeZone* z, ZemAllocator* a) { return ZemTimeZoneConstructLocal(z, a); });
}

static Zone Ruled(const std::string& rule)
{
    return Zone([&](ZemTimeZone* z, ZemAllocator* a) {
        return ZemTimeZoneConstructRule(z, rule.c_str(), a);
    });
}

// Of data in memory of exactly their size.
static Zone OfData(const std::string& bytes)
{
    std::vector<char> exact(bytes.begin(), bytes.end());
    return Zone([&](ZemTimeZone* z, ZemAllocator* a) {
        return ZemTimeZoneConstructData(z, exact.data(), exact.size(), a);
    });
}

static ZemGregorianTime Record(const std::string& text)
{
    ZemGregorianTime gt = {};
    EXPECT_NE(ZemGregorianTimeConstructCStr(&gt, text.c_str()), nullptr) << text;
    return gt;
}

static ZemTime Instant(const std::string& text)
{
    ZemGregorianTime gt = Record(text);
    return ZemGregorianTimeGetTime(&gt);
}

// ---------------------------------------------------------------------------------------------
// Rules
// ---------------------------------------------------------------------------------------------

static const char* const kRules[] = {
    "UTC0",
    "<+0330>-3:30",
    "<-00>0",
    "AAA24:59:59",
    "AAA-24:59:59BBB",
    "CET-1CEST,M3.5.0,M10.5.0/3",
    "EST5EDT,M3.2.0,M11.1.0",
    "AAA5BBB",
    "IST-1GMT0,M10.5.0,M3.5.0/1",
    "<+1030>-10:30<+11>-11,M10.1.0,M4.1.0",
    "<-03>3<-02>,M3.5.0/-2,M10.5.0/-1",
    "IST-2IDT,M3.4.4/26,M10.5.0",
    "EET-2EEST,M3.4.4/50,M10.4.4/50",
    "AAA3BBB,J60/0,J300",
    "AAA3BBB,59,300/24",
    "AAA-3BBB-5,J300/1:30:15,J60/-1:30",
    "AAA+5BBB+4:30:30,M1.1.1/-167,M12.5.6/167",
    "XXX3EDT4,0/0,J365/23",
    "EST5EDT,0/0,J365/25",
    // Odd ones: the order changes from year to year, daylight time overlaps itself or never is.
    "AAA12BBB,M12.5.6/24,M1.1.0/0",
    "AAA0BBB,0/0,J365/167",
    "AAA0BBB,J365/167,0/-167",
    "AAA0BBB,M3.4.0,J84/2",
    "AAA0BBB0,J100,J100",
    "AAA0BBB24,J100,J100/24",
    "AAA0AAA0,J1,J200",
};

TEST(ZoneRule, LikeTheReference)
{
    for (const std::string rule : kRules) {
        Zone zone = Ruled(rule);
        auto reference = ReferenceZone::FromRule(rule);
        ASSERT_TRUE(zone && reference) << rule;
        EXPECT_TRUE(ZoneIs(*zone, *reference, {})) << rule;
        EXPECT_LE((*zone).size, reference->rule->daylight == std::nullopt ? 4300U : 33000U) << rule;
    }
}

// glibc is wrong before 1970 and, where daylight time touches the year's end, there.
TEST(ZoneRule, LikeTheCLibrary)
{
    for (const char* rule : kRules) {
        Zone zone = Ruled(rule);
        // Without dates it takes those of a file; from here on they are at the year's end.
        if (std::string(rule) == "AAA5BBB" || std::string(rule) == "AAA-24:59:59BBB")
            continue;
        if (std::string(rule) == "XXX3EDT4,0/0,J365/23")
            break;
        SetTz(rule);
        EXPECT_EQ(FirstDifference(*zone, Instant("1971-01-10T00:00:00Z"),
                                  Instant("2261-12-01T00:00:00Z"), 10 * 86400 * kSecond + 1),
                  ZEM_TIME_INFINITE)
            << rule;
    }
}

TEST(ZoneRule, OfOneOffset)
{
    struct {
        const char* rule;
        ZemInt offset;
        const char* name;
    } const rows[] = {{"EST5EDT,0/0,J365/25", -14400, "EDT"},
                      {"XXX3EDT4,0/0,J365/23", -14400, "EDT"},
                      {"AAA0BBB,0/0,J365/167", 3600, "BBB"},
                      {"AAA0BBB,J365/167,0/-167", 0, "AAA"},
                      {"<a+1>-1:2:3", 3723, "a+1"}};
    for (const auto& row : rows) {
        Zone zone = Ruled(row.rule);
        ZemTime at = 42;
        ZemGregorianTime gt;
        EXPECT_FALSE(ZemTimeZoneNextTransition(&*zone, kFirst, &at)) << row.rule;
        EXPECT_FALSE(ZemTimeZonePreviousTransition(&*zone, kLast, &at)) << row.rule;
        EXPECT_FALSE(ZemTimeZonePreviousTransition(&*zone, kFirst, &at)) << row.rule;
        EXPECT_EQ(at, 42);
        ZemGregorianTimeConstructInZone(&gt, 0, &*zone);
        EXPECT_EQ(gt.tm.tm_gmtoff, row.offset);
        EXPECT_STREQ(gt.tm.tm_zone, row.name);
    }
}

TEST(ZoneRule, Refused)
{
    const std::string cet = "CET-1CEST,M3.5.0,M10.5.0/3";
    for (const std::string rule : {"",
                                   "A",
                                   "UTC",
                                   "Europe/Berlin",
                                   "AB1",
                                   "<AB>1",
                                   "<A,B>1",
                                   "<ABC1",
                                   "A1C1",
                                   ":UTC0",
                                   " UTC0",
                                   "UTC0 ",
                                   "UTC25",
                                   "UTC0:60",
                                   "UTC0:0:60",
                                   "UTC0000",
                                   "UTC0:",
                                   "UTC0:0:",
                                   "UTC--1",
                                   "UTC0,",
                                   "CET-1CE",
                                   "CET-1CEST,",
                                   "CET-1CEST,M3.5.0",
                                   "CET-1CEST,M3.5.0,",
                                   "CET-1CEST25,J1,J2",
                                   "CET-1CEST,M0.5.0,J2",
                                   "CET-1CEST,M13.5.0,J2",
                                   "CET-1CEST,M3.0.0,J2",
                                   "CET-1CEST,M3.6.0,J2",
                                   "CET-1CEST,M3.5.7,J2",
                                   "CET-1CEST,M3.5,J2",
                                   "CET-1CEST,M3,J2",
                                   "CET-1CEST,M,J2",
                                   "CET-1CEST,J0,J2",
                                   "CET-1CEST,J366,J2",
                                   "CET-1CEST,366,J2",
                                   "CET-1CEST,-1,J2",
                                   "CET-1CEST,J,J2",
                                   "CET-1CEST,J1/168,J2",
                                   "CET-1CEST,J1/-168,J2",
                                   "CET-1CEST,J1/,J2",
                                   "CET-1CEST,J1/1:60,J2",
                                   "CET-1CEST,J1,J2,",
                                   "CET-1CEST,J1,J2/3x"}) {
        EXPECT_FALSE(Ruled(rule)) << rule;
        EXPECT_FALSE(ReferenceZone::FromRule(rule)) << rule;
    }
    for (std::size_t size = 10; size < cet.size() - 2; ++size)
        EXPECT_FALSE(Ruled(cet.substr(0, size))) << size;
    // Names have no limit but that of all texts.
    EXPECT_TRUE(Ruled(std::string(32000, 'A') + "0" + std::string(32000, 'B')));
    EXPECT_FALSE(Ruled(std::string(33000, 'A') + "0" + std::string(33000, 'B')));
}

// ---------------------------------------------------------------------------------------------
// Data
// ---------------------------------------------------------------------------------------------

static Tzif Berlin()
{
    Tzif data;
    data.kinds = {{3208, 0, 0}, {3600, 0, 4}, {7200, 1, 8}};
    data.texts = std::string("LMT\0CET\0CEST\0", 13);
    data.transitions = {{-2100000000, 1}, {-1693706400, 2}, {-1680483600, 1}, {323830800, 2},
                        {338950800, 1},   {828234000, 2},   {846378000, 1}};
    data.footer = "CET-1CEST,M3.5.0,M10.5.0/3";
    return data;
}

TEST(ZoneData, LikeTheReference)
{
    std::vector<Tzif> valid(23, Berlin());
    valid[1].version = 0;
    valid[2].version = '3';
    valid[3].version = '4';
    valid[4].footer = "";
    valid[5].transitions.clear();
    valid[6].transitions.clear(), valid[6].footer = "";
    // The footer says otherwise than the last transition: it holds from there on.
    valid[7].footer = "AAA5";
    valid[8].footer = "<+02>-2<+03>,M3.4.4/50,M10.4.4/50";
    valid[9].footer = "EST5EDT,0/0,J365/25";
    // Transitions that change nothing, by one kind and by an equal one.
    valid[10].kinds.push_back({3600, 0, 13}), valid[10].texts += std::string("CET\0", 4);
    valid[10].transitions.insert(valid[10].transitions.begin() + 1,
                                 {{-2000000000, 1}, {-1900000000, 3}});
    // Three transitions in the last year.
    valid[11].transitions.push_back({850000000, 0}), valid[11].footer = "LMT-0:53:28";
    valid[12].transitions.insert(valid[12].transitions.begin(), {INT64_MIN, 2});
    valid[13].transitions.push_back({INT64_MAX, 2});
    valid[14].transitions = {
        {INT64_MIN, 1}, {INT64_MIN + 1, 0}, {INT64_MAX - 1, 2}, {INT64_MAX, 1}};
    // The first and the last second of a ZemTime, and those beside them.
    valid[15].transitions = {{-9223372038, 1}, {-9223372037, 0}, {-9223372036, 2},
                             {9223372035, 1},  {9223372036, 2},  {9223372037, 1}};
    // As far as offsets go, faster than they move the clock; one abbreviation ends another.
    valid[16].kinds = {{-89999, 0, 4}, {93599, 1, 5}, {0, 0, 12}};
    valid[16].transitions = {{0, 1}, {1, 0}, {3600, 1}, {7200, 2}, {7201, 0}, {500000, 1}};
    valid[17].standard = std::string("\0\1\1", 3), valid[17].ut = std::string(3, '\0');
    valid[18].version = '9';
    // A time of the same offset with another name or flag is another time.
    valid[19].kinds = {{3600, 0, 0}, {3600, 1, 0}, {3600, 1, 4}};
    valid[20].kinds.resize(256, {60, 0, 4}), valid[20].transitions.push_back({900000000, 255});
    // The rule has a single second to hold in, and it says daylight time.
    valid[21].transitions.push_back({9223372036, 1});
    valid[22].kinds.push_back({3208, 0, 13}), valid[22].texts += std::string("LMT\0", 4);
    valid[22].transitions[0].second = 3;
    for (std::size_t i = 0; i < valid.size(); ++i) {
        // A later version may say more behind the footer.
        for (const std::string more : {"", "more\n"}) {
            const std::string bytes = valid[i].Bytes() + more;
            Zone zone = OfData(bytes);
            auto reference = ReferenceZone::Read(bytes);
            ASSERT_TRUE(zone && reference) << i;
            std::vector<ZemTime> instants;
            for (int n = 0; n < 100; ++n)
                instants.push_back(n % 2 == 0 ? AnyInt64() : Between(-2, 500002) * kSecond);
            EXPECT_TRUE(ZoneIs(*zone, *reference, instants)) << i;
        }
    }
}

TEST(ZoneData, Refused)
{
    std::vector<Tzif> wrong(25, Berlin());
    wrong[0].kinds[1].offset = -2147483648;
    wrong[1].kinds[2].offset = 93600;
    wrong[2].kinds[0].offset = -90000;
    wrong[3].kinds[1].daylight = 2;
    wrong[4].kinds[2].text = 13;
    wrong[5].kinds[2].text = 255;
    wrong[6].kinds.clear();
    wrong[7].kinds.resize(257, {0, 0, 0});
    wrong[8].texts.back() = 'T';
    wrong[9].texts.clear();
    wrong[10].texts.resize(1025);
    wrong[11].transitions[3].second = 3;
    wrong[12].transitions[3].second = 255;
    wrong[13].transitions[3].first = wrong[13].transitions[2].first;
    wrong[14].transitions[3].first = INT64_MIN;
    wrong[15].leaps = 1;
    wrong[16].standard = "\1";
    wrong[17].ut = std::string(4, '\0');
    wrong[18].ut = std::string("\0\2\0", 3);
    wrong[19].footer = "CET-1CEST,M3.5.0,M10.5.0/168";
    wrong[20].footer = "CET-1CEST,M3.5.0,M10.5.0/3 ";
    wrong[21].version = '1';
    wrong[22].version = 1;
    wrong[23].version = ':';
    wrong[24].transitions.clear();
    for (ZemInt64 i = 0; i < 70000; ++i)
        wrong[24].transitions.emplace_back(i, 0);
    for (std::size_t i = 0; i < wrong.size(); ++i) {
        EXPECT_FALSE(OfData(wrong[i].Bytes())) << i;
        EXPECT_FALSE(ReferenceZone::Read(wrong[i].Bytes())) << i;
    }
}

// Cut anywhere, with any count as large as can be, or without a footer's end.
TEST(ZoneData, Damaged)
{
    for (char version : {'\0', '2'}) {
        Tzif data = Berlin();
        data.version = version;
        const std::string bytes = data.Bytes();
        EXPECT_TRUE(OfData(bytes));
        for (std::size_t size = 0; size < bytes.size(); ++size)
            EXPECT_FALSE(OfData(bytes.substr(0, size))) << size;
        for (std::size_t header : {std::size_t{0}, std::size_t{version == 0 ? 0U : 44U}})
            for (std::size_t at = header + 20; at < header + 44; at += 4)
                for (const char* count :
                     {"\xFF\xFF\xFF\xFF", "\x7F\xFF\xFF\xFF", "\x55\x55\x55\x56"})
                    EXPECT_FALSE(OfData(std::string(bytes).replace(at, 4, count, 4))) << at;
        EXPECT_FALSE(OfData(std::string(bytes).replace(0, 1, "t")));
    }
    const std::string bytes = Berlin().Bytes();
    EXPECT_FALSE(OfData(std::string(bytes).replace(44, 1, "t")));
    EXPECT_FALSE(OfData(std::string(bytes).replace(48, 1, 1, '\0')));
    EXPECT_FALSE(OfData(std::string(bytes).replace(bytes.size() - 28, 1, " ")));
    // What old readers would see is passed over, whatever it is.
    Tzif old = Berlin();
    old.kinds[0].offset = INT32_MIN;
    old.leaps = 2;
    const std::string fat = old.Block(4, false) + bytes.substr(44);
    auto reference = ReferenceZone::Read(fat);
    ASSERT_TRUE(OfData(fat) && reference);
    EXPECT_TRUE(ZoneIs(*OfData(fat), *reference, {}));
}

// ---------------------------------------------------------------------------------------------
// The platform's zones
// ---------------------------------------------------------------------------------------------

// All of them, and at closer instants, are a command of their own.
TEST(ZoneFile, LikeTheCLibrary)
{
    int left = 0;
    for (const std::string& name : ZoneNames()) {
        if (left-- > 0 && name != "Europe/Berlin" && name != "Africa/Casablanca")
            continue;
        left = 30;
        Zone zone = Named(name.c_str());
        auto reference = ReferenceZone::Read(FileBytes("/usr/share/zoneinfo/" + name));
        ASSERT_TRUE(zone && reference) << name;
        SetTz(name.c_str());
        EXPECT_EQ(FirstDifference(*zone, -9223000000 * kSecond, 9223000000 * kSecond,
                                  100 * 86400 * kSecond + 1),
                  ZEM_TIME_INFINITE)
            << name;
        EXPECT_TRUE(ZoneIs(*zone, *reference, {})) << name;
        for (int i = 0; i < 100; ++i) {
            ZemGregorianTime gt;
            ZemLocalTime back;
            ZemTime t = i % 2 == 0 ? AnyInt64() : Between(-5000000000, 5000000000) * kSecond - 1;
            ZemGregorianTimeConstructInZone(&gt, t, &*zone);
            ZemGregorianTimeResolve(&gt, &*zone, &back);
            EXPECT_TRUE(back.earlier == t || back.later == t) << name << ' ' << t;
        }
    }
}

TEST(ZoneFile, LocalIsTheProcessesZone)
{
    for (const char* tz :
         {static_cast<const char*>(nullptr), "", ":", "UTC", "Europe/Berlin", ":Asia/Kathmandu",
          "/usr/share/zoneinfo/America/New_York", ":/usr/share/zoneinfo/Asia/Tokyo",
          "CET-1CEST,M3.5.0,M10.5.0/3", ":AAA5", "EST5EDT", "<+0330>-3:30"}) {
        Zone zone = Local(tz);
        ASSERT_TRUE(zone) << tz;
        EXPECT_EQ(FirstDifference(*zone, 10 * 86400 * kSecond, 9223000000 * kSecond,
                                  50 * 86400 * kSecond + 1),
                  ZEM_TIME_INFINITE)
            << tz;
    }
    for (const char* tz : {"Nowhere/City", "/no/such", "/etc", "/etc/passwd", "Europe", "/",
                           "::UTC0", "../zoneinfo/UTC", "/dev/zero", "CET-1CEST,M3.5.0"})
        EXPECT_FALSE(Local(tz)) << tz;
    SetTz("UTC0");
}

// Runs a check in a process of its own, where it may change what the whole process has. It returns
// whether all is well, or nothing where the machine does not let it.
template <class Check>
static void ExpectInChild(Check check)
{
    const pid_t child = fork();
    if (child == 0) {
        std::optional<bool> right = check();
        _exit(right ? (*right ? 0 : 1) : 77);
    }
    int status = -1;
    waitpid(child, &status, 0);
    if (WIFEXITED(status) && WEXITSTATUS(status) == 77)
        GTEST_SKIP() << "needs root, and a machine that lets root do it";
    EXPECT_EQ(status, 0);
}

// The offset at an instant of 2024, or nothing where there is no zone.
static std::optional<long> LocalOffset(const char* tz)
{
    Zone zone = Local(tz);
    ZemGregorianTime gt;
    return zone ? std::optional(ZemGregorianTimeConstructInZone(&gt, 1720000000 * kSecond, &*zone)
                                    ->tm.tm_gmtoff)
                : std::nullopt;
}

// With TZ unset, whatever /etc/localtime may be: on a file system that only this process sees.
TEST(ZoneFile, LocalIsTheMachinesZone)
{
    ExpectInChild([]() -> std::optional<bool> {
        if (unshare(CLONE_NEWNS) != 0 ||
            mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
            mount("none", "/etc", "tmpfs", 0, nullptr) != 0)
            return {};
        auto with = [](const std::string& bytes) {
            std::ofstream("/etc/localtime", std::ios::binary) << bytes;
            return LocalOffset(nullptr);
        };
        return LocalOffset(nullptr) == 0 && !LocalOffset("/etc/localtime") &&
               with(Berlin().Bytes()) == 7200 && !with("TZif") && !with("");
    });
}

// In a set-user-ID program TZ may name a zone, but no file.
TEST(ZoneFile, PrivilegedProcess)
{
    if (getauxval(AT_SECURE) != 0) {
        const bool right = LocalOffset("Asia/Tokyo") == 32400 && LocalOffset("/etc/localtime") &&
                           LocalOffset("AAA5") == -18000 &&
                           !LocalOffset("/usr/share/zoneinfo/Asia/Tokyo") &&
                           !LocalOffset(":/usr/share/zoneinfo/Asia/Tokyo");
        _exit(right ? 0 : 1);
    }
    // A program with the rights of another user, started by this one: this same test.
    static const char kMark[] = "ZONE_TEST_PROGRAM";
    if (getenv(kMark) != nullptr)
        _exit(77);
    ExpectInChild([]() -> std::optional<bool> {
        char folder[] = "/tmp/zone-test-XXXXXX";
        if (geteuid() != 0 || mkdtemp(folder) == nullptr)
            return {};
        const std::string program = std::string(folder) + "/program";
        std::filesystem::copy_file("/proc/self/exe", program);
        int status = -1;
        if (chmod(folder, 0755) == 0 && chown(program.c_str(), 65534, 65534) == 0 &&
            chmod(program.c_str(), 04755) == 0 && setenv(kMark, "1", 1) == 0)
            status = std::system(
                (program + " --gtest_filter=ZoneFile.PrivilegedProcess >/dev/null 2>&1").c_str());
        std::filesystem::remove_all(folder);
        // Anything else: it cannot be started so, or has no more rights than this one.
        if (!WIFEXITED(status) || WEXITSTATUS(status) > 1)
            return {};
        return WEXITSTATUS(status) == 0;
    });
}

TEST(ZoneFile, NamesAndFiles)
{
    const auto descriptors = [] {
        std::filesystem::directory_iterator all("/proc/self/fd");
        return std::distance(begin(all), end(all));
    };
    char folder[] = "/tmp/zone-test-XXXXXX";
    ASSERT_NE(mkdtemp(folder), nullptr);
    const std::string root = std::string(folder) + "/zones";
    std::filesystem::create_directories(root + "/Own/Part");
    const std::string valid = Berlin().Bytes();
    auto write = [](const std::string& path, const std::string& bytes) {
        std::ofstream(path, std::ios::binary) << bytes;
    };
    write(root + "/Own/Zone", valid);
    write(root + "/Own/Largest", valid + std::string(32768 - valid.size(), 'x'));
    write(root + "/Own/Larger", valid + std::string(32769 - valid.size(), 'x'));
    write(root + "/Own/Empty", "");
    write(root + "/Own/Cut", valid.substr(0, 100));
    write(root + "/Own/Rule5", valid.substr(0, 100));
    write(root + "/../outside", valid);
    std::filesystem::create_symlink("Zone", root + "/Own/Link");
    std::filesystem::create_symlink("Nothing", root + "/Own/Dangling");
    mkfifo((root + "/Own/Pipe").c_str(), 0600);

    const auto before = descriptors();
    setenv("TZDIR", root.c_str(), 1);
    for (const char* name : {"Own/Zone", "Own/Largest", "Own/Link", "UTC"})
        EXPECT_TRUE(Named(name)) << name;
    for (const std::string name : {"",
                                   "/",
                                   ".",
                                   "..",
                                   "Own",
                                   "Own/",
                                   "/Own/Zone",
                                   "Own//Zone",
                                   "./Own/Zone",
                                   "Own/./Zone",
                                   "Own/../Own/Zone",
                                   "Own/Part/../Zone",
                                   "../outside",
                                   "Own/..",
                                   "Own/Part",
                                   "Own/Larger",
                                   "Own/Empty",
                                   "Own/Cut",
                                   "Own/Dangling",
                                   "Own/Pipe",
                                   "Own/Zone/More",
                                   "Own/zone",
                                   "utc",
                                   "Europe/Berlin",
                                   "/usr/share/zoneinfo/Europe/Berlin"})
        EXPECT_FALSE(Named(name.c_str())) << name;
    EXPECT_FALSE(Named(std::string(300, 'x').c_str()));
    EXPECT_FALSE(Named(std::string(5000, 'x').c_str()));
    EXPECT_TRUE(Local("Own/Zone"));
    EXPECT_TRUE(Local("UTC"));
    EXPECT_FALSE(Local("Own/Cut"));
    // The default folders again.
    setenv("TZDIR", "", 1);
    EXPECT_TRUE(Named("Europe/Berlin"));
    unsetenv("TZDIR");
    EXPECT_TRUE(Named("Europe/Berlin"));
    EXPECT_FALSE(Named("Own/Zone"));
    // Counts leap seconds, if it is there.
    EXPECT_FALSE(Named("right/Europe/Berlin"));
    EXPECT_EQ(descriptors(), before);
    std::filesystem::remove_all(folder);
    SetTz("UTC0");
}

// ---------------------------------------------------------------------------------------------
// Records
// ---------------------------------------------------------------------------------------------

TEST(ZoneRecord, GapsAndFolds)
{
    struct {
        const char* rule;
        const char* local;  // read as UTC, the rest too
        ZemInt kind;
        const char* earlier;
        const char* later;
        const char* transition;
    } const rows[] = {
        {"CET-1CEST,M3.5.0,M10.5.0/3", "2024-03-31T01:59:59.999999999Z", 0,
         "2024-03-31T00:59:59.999999999Z", "2024-03-31T00:59:59.999999999Z", nullptr},
        {"CET-1CEST,M3.5.0,M10.5.0/3", "2024-03-31T02:00:00Z", 1, "2024-03-31T00:00:00Z",
         "2024-03-31T01:00:00Z", "2024-03-31T01:00:00Z"},
        {"CET-1CEST,M3.5.0,M10.5.0/3", "2024-03-31T02:59:59.5Z", 1, "2024-03-31T00:59:59.5Z",
         "2024-03-31T01:59:59.5Z", "2024-03-31T01:00:00Z"},
        {"CET-1CEST,M3.5.0,M10.5.0/3", "2024-03-31T03:00:00Z", 0, "2024-03-31T01:00:00Z",
         "2024-03-31T01:00:00Z", nullptr},
        {"CET-1CEST,M3.5.0,M10.5.0/3", "2024-10-27T01:59:59Z", 0, "2024-10-26T23:59:59Z",
         "2024-10-26T23:59:59Z", nullptr},
        {"CET-1CEST,M3.5.0,M10.5.0/3", "2024-10-27T02:00:00Z", 2, "2024-10-27T00:00:00Z",
         "2024-10-27T01:00:00Z", "2024-10-27T01:00:00Z"},
        {"CET-1CEST,M3.5.0,M10.5.0/3", "2024-10-27T02:59:60Z", 0, "2024-10-27T02:00:00Z",
         "2024-10-27T02:00:00Z", nullptr},
        {"CET-1CEST,M3.5.0,M10.5.0/3", "1969-12-31T23:59:59Z", 0, "1969-12-31T22:59:59Z",
         "1969-12-31T22:59:59Z", nullptr},
        {"UTC0", "1969-12-31T23:59:58Z", 0, "1969-12-31T23:59:58Z", "1969-12-31T23:59:58Z",
         nullptr},
        {"IST-1GMT0,M10.5.0,M3.5.0/1", "1969-03-30T01:30:00Z", 1, "1969-03-30T00:30:00Z",
         "1969-03-30T01:30:00Z", "1969-03-30T01:00:00Z"},
        {"<+1030>-10:30<+11>-11,M10.1.0,M4.1.0", "2024-04-07T01:45:00Z", 2, "2024-04-06T14:45:00Z",
         "2024-04-06T15:15:00Z", "2024-04-06T15:00:00Z"},
    };
    for (const auto& row : rows) {
        Zone zone = Ruled(row.rule);
        ZemGregorianTime gt = Record(row.local);
        ZemLocalTime result;
        ASSERT_EQ(ZemGregorianTimeResolve(&gt, &*zone, &result), &result);
        EXPECT_EQ(result.kind, row.kind) << row.local;
        EXPECT_EQ(result.earlier, Instant(row.earlier)) << row.local;
        EXPECT_EQ(result.later, Instant(row.later)) << row.local;
        EXPECT_EQ(result.transition, row.transition ? Instant(row.transition) : result.earlier);
        EXPECT_EQ(ZemGregorianTimeGetTimeInZone(&gt, &*zone),
                  row.kind == 1 ? result.later : result.earlier);
    }
    Zone utc = Ruled("UTC0");
    ZemGregorianTime gt;
    ZemGregorianTimeConstructFields(&gt, 1969, 12, 31, 23, 59, 59, 0);
    EXPECT_EQ(ZemGregorianTimeGetTimeInZone(&gt, &*utc), -kSecond);
}

// The instant decides on the way there, the floored second on the way back.
TEST(ZoneRecord, FractionsBefore1970)
{
    Tzif data = Berlin();
    Zone zone = OfData(data.Bytes());
    for (const auto& [second, kind] : data.transitions)
        for (ZemTime step = -2 * kSecond; step <= 2 * kSecond; step += kSecond / 4) {
            ZemGregorianTime gt;
            ZemLocalTime back;
            ZemTime t = second * kSecond + step;
            ZemGregorianTimeConstructInZone(&gt, t, &*zone);
            ZemGregorianTimeResolve(&gt, &*zone, &back);
            EXPECT_TRUE(back.earlier == t || back.later == t) << t;
            EXPECT_TRUE(t >= 0 || gt.nanosecs <= 0);
        }
}

TEST(ZoneRecord, EndsOfTheSpan)
{
    // An hour back ten seconds before the end, an hour on ten seconds after the beginning.
    Tzif data;
    data.kinds = {{0, 0, 0}, {3600, 0, 0}};
    data.transitions = {{-9223372027, 1}, {9223372026, 0}};
    Zone zone = OfData(data.Bytes());
    ZemGregorianTime gt;
    ZemLocalTime result;

    ZemGregorianTimeConstructInZone(&gt, kLast - kSecond * 100, &*zone);
    ZemGregorianTimeResolve(&gt, &*zone, &result);
    EXPECT_EQ(result.kind, 2);
    EXPECT_EQ(result.earlier, kLast - kSecond * 100);
    EXPECT_EQ(result.later, ZEM_TIME_INFINITE);
    EXPECT_EQ(result.transition, 9223372026 * kSecond);

    ZemGregorianTimeConstructUTC(&gt, kFirst + kSecond * 15);
    ZemGregorianTimeResolve(&gt, &*zone, &result);
    EXPECT_EQ(result.kind, 1);
    EXPECT_EQ(result.earlier, ZEM_TIME_INFINITE);
    EXPECT_EQ(result.later, kFirst + kSecond * 15);
    EXPECT_EQ(result.transition, -9223372027 * kSecond);

    for (const char* rule : {"AAA24:59:59", "AAA-24:59:59", "AAA0"}) {
        Zone fixed = Ruled(rule);
        for (ZemTime t : {kFirst, kFirst + 1, kLast - 1, kLast}) {
            ZemGregorianTimeConstructInZone(&gt, t, &*fixed);
            EXPECT_EQ(ZemGregorianTimeGetTimeInZone(&gt, &*fixed), t) << rule;
            // A nanosecond further is outside.
            gt.nanosecs += t < 0 ? -2 : 2;
            EXPECT_EQ(ZemGregorianTimeGetTimeInZone(&gt, &*fixed), ZEM_TIME_INFINITE) << rule;
        }
    }
}

TEST(ZoneRecord, AnyFields)
{
    Zone zone = Ruled("CET-1CEST,M3.5.0,M10.5.0/3");
    auto reference = ReferenceZone::FromRule("CET-1CEST,M3.5.0,M10.5.0/3");
    for (int i = 0; i < 2000; ++i) {
        ZemGregorianTime gt = {};
        for (int* field :
             {&gt.tm.tm_mon, &gt.tm.tm_mday, &gt.tm.tm_hour, &gt.tm.tm_min, &gt.tm.tm_sec})
            *field = static_cast<int>(Between(-40, 70) << Between(0, 12));
        gt.tm.tm_year = static_cast<int>(Between(-300, 400));
        gt.nanosecs = i % 2 == 0 ? AnyInt64() : Between(-5 * kSecond, 5 * kSecond);
        gt.tm.tm_isdst = static_cast<int>(Between(-1, 1));
        gt.tm.tm_gmtoff = AnyInt64();
        EXPECT_TRUE(ZoneResolves(*zone, *reference, gt));
    }
    for (int extreme : {INT_MIN, INT_MAX})
        for (ZemInt64 nanosecs : {INT64_MIN, ZemInt64{0}, INT64_MAX}) {
            ZemGregorianTime gt = {};
            ZemLocalTime result;
            gt.tm.tm_year = gt.tm.tm_mon = gt.tm.tm_mday = gt.tm.tm_hour = extreme;
            gt.tm.tm_min = gt.tm.tm_sec = extreme;
            gt.nanosecs = nanosecs;
            EXPECT_EQ(ZemGregorianTimeGetTimeInZone(&gt, &*zone), ZEM_TIME_INFINITE);
            ZemGregorianTimeResolve(&gt, &*zone, &result);
            EXPECT_EQ(result.earlier, ZEM_TIME_INFINITE);
            EXPECT_EQ(result.kind, 0);
        }
}
