#include "vxgrid/serial/gaussian_vxb.h"

#include <gtest/gtest.h>

#include <vector>

#include "support/bad_input.h"
#include "support/vxb_bytes.h"
#include "support/vxb_objects.h"
#include "vxgrid/grid/scalar_grid.h"

namespace VXCore {
namespace {

using vxgrid_test::bytes_of;
using vxgrid_test::vxb_read;
using vxgrid_test::vxb_record;
using vxgrid_test::vxb_written;
using vxgrid_test::VXBTurner;
using VXHost::vxisstream;
using VXHost::vxosstream;

std::string unknown() {
  return vxb_record("Future", "abc");
}

void keep_unknown(VXBase& object) {
  vxisstream in(unknown());
  VXBinaryIOHandler().ReadAs(in, object, type_ids::base);
}

VXGaussian tagged_gaussian() {
  VXGaussian g(2.7f, 0.5f, 1, -2, 3, 0xff8001);
  g.SetStringData("atom", "CA");
  g.SetData("grid", VXScalarGrid(2, 2, 2, 0, 0, 0, 1, "small"));
  keep_unknown(g);
  return g;
}

// Gaussians with and without tagged data in every order, and data of the container's own.
VXGaussianContainer container(bool tagged) {
  VXGaussianContainer c;
  for (unsigned int i = 0; i < 5; ++i) {
    VXGaussian g = i % 3 == 1 ? tagged_gaussian() : VXGaussian();
    g.SetColor(i);
    c.AddGaussian(g);
  }
  if (tagged) {
    c.SetIntData("of", 5);
    keep_unknown(c);
  }
  return c;
}

void expect_same(const VXGaussianBase& a, const VXGaussianBase& b) {
  EXPECT_EQ(a.GetPrefactor(), b.GetPrefactor());
  EXPECT_EQ(a.GetWidth(), b.GetWidth());
  EXPECT_EQ(a.GetColor(), b.GetColor());
  EXPECT_EQ(a.GetX(), b.GetX());
  EXPECT_EQ(a.GetY(), b.GetY());
  EXPECT_EQ(a.GetZ(), b.GetZ());
  EXPECT_EQ(a.GetStringData("atom"), b.GetStringData("atom"));
  EXPECT_EQ(a.HasData("grid"), b.FindDataValue<VXScalarGrid>("grid") != nullptr);
}

TEST(GaussianVXB, a_plain_gaussian_is_six_numbers_with_a_head_each) {
  const VXGaussian g(1, 2, 3, 4, 5, 0x01020304);
  std::string body;
  for (const float number : {1.0f, 2.0f})
    body += '\1' + bytes_of(number);
  body += std::string("\1\4\3\2\1");
  for (const float number : {3.0f, 4.0f, 5.0f})
    body += '\1' + bytes_of(number);
  EXPECT_EQ(vxb_written(g), vxb_record("VXGaussian", body));
  VXGaussianContainer c;
  c.AddGaussian(g);
  c.AddGaussian(g);
  EXPECT_EQ(vxb_written(c),
            vxb_record("VXGaussianCont", std::string("\1\2\0\0\0", 5) + body + body));
}

TEST(GaussianVXB, gaussians_and_containers_survive_with_tags_and_in_the_other_byte_order) {
  const std::string bytes = vxb_written(tagged_gaussian());
  for (const std::string& source : {bytes, VXBTurner::turned(bytes)}) {
    VXGaussian back;
    ASSERT_EQ(vxb_read(source, back), 0u);
    expect_same(tagged_gaussian(), back);
    EXPECT_EQ(vxb_written(back), bytes);
    EXPECT_NE(bytes.find(unknown()), std::string::npos);
  }
  for (const bool tagged : {false, true}) {
    const VXGaussianContainer c = container(tagged);
    const std::string all = vxb_written(c);
    for (const std::string& source : {all, VXBTurner::turned(all)}) {
      VXGaussianContainer back;
      ASSERT_EQ(vxb_read(source, back), 0u);
      ASSERT_EQ(back.NumGaussians(), 5u);
      EXPECT_EQ(back.GetIntData("of"), tagged ? 5 : 0);
      VXIter<const VXGaussianBase> given(c.GetGaussians());
      VXIter<const VXGaussianBase> got(std::as_const(back).GetGaussians());
      auto expected = given.begin();
      for (const VXGaussianBase& g : got) {
        expect_same(*expected, g);
        ++expected;
      }
      EXPECT_EQ(vxb_written(back), all);
    }
  }
}

TEST(GaussianVXB, reading_stops_at_a_bad_head_and_keeps_what_came_before) {
  struct {
    std::string head;
    unsigned int status;
  } const cases[] = {{"\1", 0}, {"\41", 0}, {"\201", 0}, {"\2", 2}, {"\0", 2}, {"\37", 2}};
  const std::string body = vxb_written(container(false)).substr(19);
  for (const auto& c : cases) {
    std::string changed = body;
    changed[5 + 5] = c.head[0];
    VXGaussianContainer back;
    EXPECT_EQ(vxb_read(vxb_record("VXGaussianCont", changed), back), c.status);
    EXPECT_EQ(back.NumGaussians(), c.status == 0 ? 5u : 0u);
  }
  for (const std::size_t kept : {4u, 5u, 34u, 35u, 64u}) {
    VXGaussianContainer back;
    EXPECT_EQ(vxb_read(vxb_record("VXGaussianCont", body.substr(0, kept)), back), 2u) << kept;
    EXPECT_EQ(back.NumGaussians(), kept < 35 ? 0u : 1u) << kept;
  }
  VXGaussian gaussian;
  EXPECT_EQ(vxb_read(vxb_record("VXGaussian", body.substr(5, 30) + "\11VXB"), gaussian), 2u);
  VXGaussianContainer back;
  EXPECT_EQ(vxb_read(vxb_written(container(false)).substr(0, 60), back), 4u);
  EXPECT_EQ(back.NumGaussians(), 0u);
}

template <class Object>
void check_bad_input(const Object& object) {
  const std::string good = vxb_written(object);
  vxgrid_test::for_every_cut(good, [&](const std::string& cut, std::size_t length) {
    Object back;
    EXPECT_NE(vxb_read(cut, back), 0u) << length;
  });
  vxgrid_test::for_random_bytes(good, 1000, [&](const std::string& bytes) {
    Object back;
    vxb_read(bytes, back);
    vxb_written(back);
  });
}

TEST(GaussianVXB, a_record_cut_at_any_byte_fails_and_damaged_ones_do_no_harm) {
  check_bad_input(tagged_gaussian());
  check_bad_input(container(true));
}

}  // namespace
}  // namespace VXCore
