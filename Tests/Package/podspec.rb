# Evaluates the podspec as its tool would, and holds it to the tree: podspec.rb SOURCE.
# The tool itself is in no package of the system. What stands in for it knows the attributes that a pod may have,
# and refuses others.

require 'find'

module Pod
  class Spec
    ATTRIBUTES = %i[name version summary description homepage license author source requires_arc static_framework
                    frameworks libraries source_files public_header_files resource_bundles
                    pod_target_xcconfig].freeze

    class << self
      attr_reader :last
    end

    attr_reader :values, :platform

    def self.new(...) = @last = super

    def initialize
      @values = {}
      yield self
    end

    ATTRIBUTES.each { |name| define_method(:"#{name}=") { |*value| @values[name] = value.flatten(1) } }

    def platform=(value)
      @platform = value
    end

    def version = self[:version].first

    def [](name) = @values.fetch(name)
  end
end

source = ARGV.fetch(0)
Dir.chdir(source)
load './ZibMessaging.podspec'
spec = Pod::Spec.last
mistakes = []

(Pod::Spec::ATTRIBUTES - spec.values.keys).each { |name| mistakes << "#{name} is missing" }
mistakes << "the platform is #{spec.platform}" unless spec.platform == [:ios, '13.0']
version = File.read('CHANGELOG.md')[/^## (\d+\.\d+\.\d+)/, 1]
mistakes << "the version is #{spec.version}, the changelog's #{version}" unless spec.version == version
mistakes << 'the description is no longer than the summary' unless spec[:description][0].size > spec[:summary][0].size
mistakes << 'there is no license file' unless File.exist?(spec[:license][0][:file])

files = ->(patterns) { patterns.flat_map { |pattern| Dir.glob(pattern) }.sort }
compiled = files[spec[:source_files]]
kinds = %w[.h .m .mm .cpp .c]
there = Find.find('Sources').select { |path| kinds.include?(File.extname(path)) }.sort
(there - compiled).each { |path| mistakes << "#{path} is left out" }
[*spec[:public_header_files], *spec[:resource_bundles][0].values.flatten].each do |pattern|
  mistakes << "#{pattern} matches no file" if Dir.glob(pattern).empty?
end

# A public header is taken out of its folder, and may ask for nothing but public ones and the platform's.
public_names = files[spec[:public_header_files]].map { |path| File.basename(path) }
files[spec[:public_header_files]].each do |path|
  File.read(path).scan(/^#(?:include|import) "(.*)"/).flatten.each do |name|
    mistakes << "#{path} asks for #{name}, which is not public" unless public_names.include?(name)
  end
end

# Where the sources find each other, from the pod's own folder.
settings = spec[:pod_target_xcconfig][0]
folders = settings['HEADER_SEARCH_PATHS'].scan(/"\$\{PODS_TARGET_SRCROOT\}\/(\S+)"/).flatten
compiled.each do |path|
  File.read(path).scan(/^#(?:include|import) "(.*)"/).flatten.each do |name|
    found = [File.dirname(path), *folders].any? { |folder| File.exist?(File.join(folder, name)) }
    mistakes << "#{path} finds no #{name}" unless found
  end
end
mistakes << 'the language is not C++20' unless settings['CLANG_CXX_LANGUAGE_STANDARD'] == 'c++20'

puts mistakes
abort unless mistakes.empty?
puts "#{spec[:name][0]} #{spec.version}: #{compiled.size} sources, #{public_names.size} public headers"
