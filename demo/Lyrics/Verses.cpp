#include "Verses.h"

namespace navorin::demo {

using Poem = std::vector<VerseLine>;

const std::vector<Poem> &persianPoems()
{
    static const std::vector<Poem> poems{
        // Hafez
        {{"الا یا ایها الساقی ادر کأسا و ناولها", "Come, you who pour: fill the cup and pass it on"},
         {"که عشق آسان نمود اول ولی افتاد مشکل‌ها",
          "Love looked easy at first, and then the hard days came"},
         {"به بوی نافه‌ای کآخر صبا زان طره بگشاید",
          "For the scent the wind may free at last from that lock"},
         {"ز تاب جعد مشکینش چه خون افتاد در دل‌ها",
          "How its dark curls have made our hearts bleed"},
         {"مرا در منزل جانان چه امن عیش چون هر دم", "What rest have I at her door, when every moment"},
         {"جرس فریاد می‌دارد که بربندید محمل‌ها",
          "The bell cries out: load up, it is time to leave"},
         {"شب تاریک و بیم موج و گردابی چنین هایل", "A dark night, fear of waves, a whirlpool this wide"},
         {"کجا دانند حال ما سبکباران ساحل‌ها",
          "What do they know of us, the light ones on the shore"}},
        // Rumi
        {{"بشنو این نی چون شکایت می‌کند", "Listen how this reed complains"},
         {"از جدایی‌ها حکایت می‌کند", "It tells the tale of partings"},
         {"کز نیستان تا مرا ببریده‌اند", "Since they cut me from the reed bed"},
         {"در نفیرم مرد و زن نالیده‌اند", "All who hear my cry have wept with me"},
         {"سینه خواهم شرحه شرحه از فراق", "I want a heart torn piece by piece by absence"},
         {"تا بگویم شرح درد اشتیاق", "That I may tell it what longing is"},
         {"هر کسی کو دور ماند از اصل خویش", "Whoever is left far from where they began"},
         {"باز جوید روزگار وصل خویش", "Looks again for the day of their return"}},
        // Hafez
        {{"یوسف گم‌گشته بازآید به کنعان غم مخور",
          "Lost Joseph will come home again: do not grieve"},
         {"کلبهٔ احزان شود روزی گلستان غم مخور", "The house of sorrows will bloom one day: do not grieve"},
         {"ای دل غمدیده حالت به شود دل بد مکن", "Sad heart, you will be well, think no ill"},
         {"وین سر شوریده باز آید به سامان غم مخور", "This troubled head will find its rest: do not grieve"},
         {"گر بهار عمر باشد باز بر تخت چمن", "If the spring of life stays on the throne of grass"},
         {"چتر گل در سر کشی ای مرغ خوشخوان غم مخور", "You will sit under roses, sweet bird: do not grieve"},
         {"دور گردون گر دو روزی بر مراد ما نرفت", "If for a day or two the wheel did not turn our way"},
         {"دائما یکسان نباشد حال دوران غم مخور", "It does not turn one way for ever: do not grieve"}},
        // Khayyam
        {{"چون ابر به نوروز رخ لاله بشست", "When the new year's cloud has washed the tulip's face"},
         {"برخیز و به جام باده کن عزم درست", "Rise, and set your mind upon the cup"},
         {"کاین سبزه که امروز تماشاگه توست", "This green that is your view today"},
         {"فردا همه از خاک تو بر خواهد رست", "Tomorrow it will grow from your own dust"},
         {"این قافلهٔ عمر عجب می‌گذرد", "How strangely passes life's caravan"},
         {"دریاب دمی که با طرب می‌گذرد", "Catch the moment that goes by in joy"},
         {"ساقی غم فردای حریفان چه خوری", "Why do you mourn the others' tomorrow"},
         {"پیش آر پیاله را که شب می‌گذرد",
          "Bring the cup here, for the night goes by"}},
        // Saadi
        {{"بنی‌آدم اعضای یکدیگرند", "The children of Adam are limbs of one another"},
         {"که در آفرینش ز یک گوهرند", "For they are made of one same jewel"},
         {"چو عضوی به درد آورد روزگار", "When time brings pain upon a single limb"},
         {"دگر عضوها را نماند قرار", "The others cannot be at ease"},
         {"تو کز محنت دیگران بی‌غمی", "You who feel nothing of another's trouble"},
         {"نشاید که نامت نهند آدمی", "Should not be given the name of human"}},
    };
    return poems;
}

const std::vector<Poem> &latinPoems()
{
    static const std::vector<Poem> poems{
        {{"I left the radio on for the rain", "رادیو را برای باران روشن گذاشتم"},
         {"It hums a tune the gutters know", "زمزمه‌ای که ناودان‌ها بلدند"},
         {"Your train is late, it's late again", "قطارت دیر کرده، باز هم دیر"},
         {"The platform shines with what won't go",
          "سکو از هرچه نمی‌رود برق می‌زند"},
         {"Hold on, hold on, the night is wide", "بمان، بمان، شب پهناور است"},
         {"There's one more song on the other side", "آن طرف یک ترانهٔ دیگر هست"}},
        {{"Count the windows, count the lights", "پنجره‌ها را بشمار، چراغ‌ها را"},
         {"Someone's dancing on the seventh floor", "کسی در طبقهٔ هفتم می‌رقصد"},
         {"We were going to be all right", "قرار بود حال ما خوب شود"},
         {"We said that once or twice before", "یکی دو بار پیش‌تر هم گفتیم"},
         {"So turn the dial and let it burn", "پس پیچ را بچرخان و بگذار بسوزد"},
         {"The stars come up, the records turn",
          "ستاره‌ها می‌آیند و صفحه‌ها می‌چرخند"}},
    };
    return poems;
}

const Poem &mixedPoem()
{
    static const Poem poem{
        {"با تو رفتیم Café Naderi، ساعت ۵", "We went with you to Café Naderi, at 5"},
        {"روی نوار کاست نوشتی: Summer 1986", "You wrote upon the tape: Summer 1986"},
        {"Side B هنوز بوی تو را دارد ☕", "Side B still smells of you ☕"},
        {"نصف راه را FM 98.5 خواند 🎶", "Half the way was sung by FM 98.5 🎶"},
        {"And I said: بمان، تا صبح بمان", "و من گفتم: stay, stay till the morning"},
    };
    return poem;
}

} // namespace navorin::demo
