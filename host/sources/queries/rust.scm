; What is declared.
(function_item name: (_) @name body: (_) @body) @function
(function_signature_item name: (_) @name) @function
(struct_item name: (_) @name) @struct
(union_item name: (_) @name) @struct
(enum_item name: (_) @name body: (_) @body) @enum
(enum_variant name: (_) @name) @constant
(trait_item name: (_) @name body: (_) @body) @interface
(type_item name: (_) @name) @type
(associated_type name: (_) @name) @type
(field_declaration name: (_) @name) @attribute
(macro_definition name: (_) @name) @function
(const_item name: (_) @name) @binding @constant
(static_item name: (_) @name) @binding @variable
(mod_item name: (_) @name) @declaration

; What stands in a type.
(impl_item body: (declaration_list (function_item) @method))
(trait_item body: (declaration_list [(function_item) (function_signature_item)] @method))

; What belongs to the declaration below it.
(attribute_item) @decorator
(impl_item) @of

; What is a test.
(attribute_item (attribute . [(identifier) @word (scoped_identifier name: (identifier) @word)])
  (#eq? @word "test")) @testing
(attribute_item (attribute . (identifier) @word arguments: (token_tree . (identifier) @condition))
  (#eq? @word "cfg") (#eq? @condition "test")) @testing
(attribute_item
  (attribute . (identifier) @word arguments: (token_tree . (identifier) @operator . (token_tree (identifier) @condition)))
  (#eq? @word "cfg") (#eq? @operator "all") (#eq? @condition "test")) @testing
(source_file
  (inner_attribute_item (attribute . (identifier) @word arguments: (token_tree . (identifier) @condition)))
  (#eq? @word "cfg") (#eq? @condition "test")) @test

; Bodies, and what a constant holds.
(struct_item body: (field_declaration_list) @body) @of
(union_item body: (_) @body) @of
(mod_item body: (_) @body) @of
(const_item value: (_) @value) @of
(static_item value: (_) @value) @of
(macro_definition "{" @body) @of

; What is public.
(function_item (visibility_modifier)) @exported
(function_signature_item (visibility_modifier)) @exported
(struct_item (visibility_modifier)) @exported
(union_item (visibility_modifier)) @exported
(enum_item (visibility_modifier)) @exported
(trait_item (visibility_modifier)) @exported
(type_item (visibility_modifier)) @exported
(const_item (visibility_modifier)) @exported
(static_item (visibility_modifier)) @exported
(mod_item (visibility_modifier)) @exported
(attribute_item (attribute . (identifier) @word) (#eq? @word "macro_export")) @exporting

(function_item body: (_) @local @enclosed)
(closure_expression body: (_) @local @enclosed)

[(line_comment) (block_comment)] @comment
